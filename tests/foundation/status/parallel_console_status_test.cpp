#include "lumo/foundation/status/parallel_console_status.h"

#include <gtest/gtest.h>

#include <atomic>

#include "death_output.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/status/parallel_local.h"
#include "white_text.h"

namespace lumo {
namespace {

using namespace std::chrono_literals;

/// A tree whose polls can be counted, to wait for a drawing instead of for a time.
class CountedRoot final : public NullStatusNode {
 public:
    StatusTree get_tree() const override {
        polls++;
        return node.get_tree();
    }
    /// Returns when what stands now has been drawn: a poll that began later has begun its successor.
    void wait_until_drawn() const {
        const int seen = polls;
        while (polls < seen + 2) std::this_thread::sleep_for(1ms);
    }
    ParallelLocalNode node;

 private:
    mutable std::atomic<int> polls{0};
};

class ParallelConsoleStatusTest : public testing::Test {
 protected:
    void SetUp() override { Console::settings().colors_enabled = false; }
    void TearDown() override { Console::settings() = Console::Settings(); }

    template <typename F>
    std::string drawn(F&& f, upL_t width = 8) {
        testing::internal::CaptureStdout();
        {
            const ParallelConsoleStatus status(root, 1ms, width);
            f();
        }
        return testing::internal::GetCapturedStdout();
    }

    CountedRoot root;
};

TEST_F(ParallelConsoleStatusTest, OneNodeIsOneRowWithoutCursorMovement) {
    root.node.push_node(white("one"));
    EXPECT_EQ(drawn([&] {
                  root.wait_until_drawn();
                  root.node.set_status(white("two"));
                  root.wait_until_drawn();
                  root.wait_until_drawn();
              }),
              "one\r"
              "\r        \rtwo\r"
              "\r        \r");
}

TEST_F(ParallelConsoleStatusTest, RowsAreErasedFromTheFirstAndCutAtASegment) {
    root.node.push_node(white("ab"));
    const auto left = root.node.make_node(), right = root.node.make_node();
    left->push_node(white("x"));
    right->push_node(white("y"));
    EXPECT_EQ(drawn([&] { root.wait_until_drawn(); }),
              "abx\n  y\r"
              "\r\x1b[F        \r\n        \r\x1b[F");
    left->pop_frame();
    right->pop_frame();
    root.node.set_status({{'w', "1234"}, {'w', "5678"}, {'w', "9"}});
    EXPECT_EQ(drawn([&] { root.wait_until_drawn(); }).substr(0, 9), "12345678\r");
    root.node.set_status({{'w', "1234"}, {'w', "56789"}, {'w', "0"}});
    EXPECT_EQ(drawn([&] { root.wait_until_drawn(); }).substr(0, 5), "1234\r");
}

TEST_F(ParallelConsoleStatusTest, AMessageStaysAndRowsContinueBeneath) {
    root.node.push_node(white("row"));
    EXPECT_EQ(drawn([&] {
                  root.wait_until_drawn();
                  Console::print_line("message");
                  root.wait_until_drawn();
              }),
              "row\rmessage\n"
              "\nrow\r"
              "\r        \r");
}

TEST_F(ParallelConsoleStatusTest, AnEmptyTreeLeavesTheConsoleAlone) {
    EXPECT_EQ(drawn([&] {
                  root.wait_until_drawn();
                  Console::print("message");
                  root.wait_until_drawn();
              }),
              "message");
}

/// A root that cannot be polled.
class BrokenRoot final : public NullStatusNode {
    StatusTree get_tree() const override { throw std::runtime_error("no tree"); }
};

TEST_F(ParallelConsoleStatusTest, ExceptionsOfTheThreadAreToldAndEndTheProgram) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(dying([] {
                     const BrokenRoot broken;
                     const ParallelConsoleStatus status(broken, 1ms, 8);
                     std::this_thread::sleep_for(10s);
                 }),
                 "Exception thrown from ParallelConsoleStatus: no tree");
}

}  // namespace
}  // namespace lumo
