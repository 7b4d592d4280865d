#include "lumo/foundation/status/linear_console.h"

#include <gtest/gtest.h>

#include <thread>

#include "console_talk.h"
#include "failures.h"
#include "lumo/foundation/console/console.h"
#include "white_text.h"

namespace lumo {
namespace {

class LinearConsole : public testing::Test {
 protected:
    void SetUp() override { Console::settings().colors_enabled = false; }
    void TearDown() override { Console::settings() = Console::Settings(); }
};

TEST_F(LinearConsole, LabelsStandInSequenceOnOneLine) {
    EXPECT_EQ(printed_by([] {
                  LinearConsoleNode root;
                  {
                      const StatusSection division(root, white("Division..."));
                      for (const char* label : {" 0M ", " 1M ", " 2A "}) {
                          const StatusSection step(root, {{'T', label}, {'Y', "1,000"}});
                      }
                      root.set_status({{'T', " done"}});
                  }
                  const StatusSection next(root, white("Square root..."));
              }),
              "Division... 0M 1,000 1M 1,000 2A 1,000 done\nSquare root...\n");
    EXPECT_EQ(printed_by([] {  // texts of different steps do not run together
                  LinearConsoleNode root(20);
                  for (const char* text : {"Heading:", "one", "two ", "three", "four"})
                      root.push_node(white(text));
              }),
              "Heading: one two \nthree four\n");
    Console::settings().colors_enabled = true;
    EXPECT_EQ(printed_by([] {
                  LinearConsoleNode root;
                  const StatusSection step(root, {{'T', " 0M "}, {'Y', "9"}});
              }),
              "\x1b[01;36m 0M \x1b[01;33m9\x1b[01;37m\n");
}

TEST_F(LinearConsole, FullLinesAreEndedAndForeignTextIsNotJoined) {
    EXPECT_EQ(printed_by([] {
                  LinearConsoleNode root(10);
                  root.push_node(white("12345678"));
                  root.push_node(white("abc"));
                  Console::print_line("\nwarning");
                  root.push_node(white("def"));
              }),
              "12345678\nabc\nwarning\ndef\n");
}

TEST_F(LinearConsole, InnerLevelsDoNotFlood) {
    const std::string text = printed_by([] {
        LinearConsoleNode root;
        const StatusSection outer(root, white("Summing"));
        for (int i = 0; i < 100000; i++) const StatusSection inner(root, white("0123456789"));
        const StatusSection last(root, white("x"));
    });
    EXPECT_GT(text.size(), 1000u);
    EXPECT_LT(text.size(), 10000u);
}

TEST_F(LinearConsole, Refusals) {
    printed_by([] {
        LinearConsoleNode root;
        EXPECT_EQ(message_of([&] { root.get_tree(); }), "Polling is not supported.");
        EXPECT_EQ(message_of([&] { root.pop_frame(); }), "Attempted to pop a non-existent node.");
        {
            const auto child = root.make_node();
            child->push_node(white("a"));
            EXPECT_EQ(message_of([&] { root.push_node(white("b")); }),
                      "Attempted to fork a linear status chain.");
            const auto grandchild = child->make_node();
            EXPECT_EQ(message_of([&] { child->push_node({}); }), "Attempted to fork a linear status chain.");
        }
        EXPECT_NO_THROW(root.push_node(white("b")));
        const auto loop = root.make_iteration(10);
        EXPECT_EQ(message_of([&] { loop->make_iteration(2); }), "Iteration stacking is not supported.");
        EXPECT_EQ(message_of([&] { loop->get_completed(); }), "Polling is not supported.");
        EXPECT_EQ(message_of([&] { loop->push_node({}); }), "Attempted to extend a linear status chain.");
        EXPECT_EQ(message_of([&] { loop->get_tree(); }), "Not Implemented");
    });
}

TEST_F(LinearConsole, OneOfSeveralThreadsIsHeard) {
    EXPECT_EQ(printed_by([] {
                  LinearConsoleNode root;
                  root.push_node(white("Sum"));
                  {
                      const auto a = root.make_node(), b = root.make_node();
                      std::thread other([&] { const StatusSection s(*b, white(" second")); });
                      other.join();
                      const StatusSection s(*a, white(" first"));
                  }
                  const auto c = root.make_node();
                  const StatusSection s(*c, white(" third"));
              }),
              "Sum first third\n");
}

TEST_F(LinearConsole, LoopsTellTheirProgressSeldom) {
    const std::string text = printed_by([] {
        LinearConsoleNode root;
        const auto loop = root.make_iteration(2000);
        for (int i = 0; i < 999; i++) loop->complete();
        std::this_thread::sleep_for(std::chrono::milliseconds(1050));
        for (int i = 0; i < 500; i++) loop->complete();
    });
    EXPECT_EQ(text.substr(0, text.find(" )")), "1,000 / 2,000  ( 50.0%");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
    EXPECT_NO_THROW(printed_by([] { LinearConsoleNode().make_iteration(0)->complete(); }));
}

}  // namespace
}  // namespace lumo
