#include "lumo/foundation/console/console.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "console_talk.h"

namespace lumo::Console {
namespace {

class ConsoleTest : public testing::Test {
 protected:
    void TearDown() override { settings() = Settings(); }
};

TEST_F(ConsoleTest, ColoursOfLetters) {
    EXPECT_EQ(printed_by([] { print("a", 'B'); }), "\x1b[01;34ma");
    EXPECT_EQ(printed_by([] { print("a", 'b'); }), "\x1b[22;34ma");
    EXPECT_EQ(printed_by([] { print("a", 'T'); }), "\x1b[01;36ma");
    EXPECT_EQ(printed_by([] { print("a", 'z'); }), "\x1b[01;37ma");
    EXPECT_EQ(printed_by([] { print("a", ' '); }), "a");
    EXPECT_EQ(printed_by([] { reset_color(); }), "\x1b[39;49m");
    EXPECT_EQ(printed_by([] { reset_color_in_signal_handler(); }), "\x1b[39;49m");
    EXPECT_EQ(printed_by([] { print_label("Size", "12", 'G'); }),
              "\x1b[01;37mSize: \x1b[01;32m12\x1b[01;37m");
    EXPECT_EQ(printed_by([] { print_label_line("Size", "12", ' '); }), "Size: 12\n");
    EXPECT_EQ(printed_by([] { print_error("bad", true); }), "\x1b[01;31m\nbad\n");
    EXPECT_EQ(printed_by([] { print_error("bad"); }), "\x1b[01;31m\nbad\n\x1b[01;37m");
    settings().colors_enabled = false;
    EXPECT_EQ(printed_by([] {
                  print_label_line("Size", "12", 'G');
                  print_error("bad");
                  reset_color();
                  reset_color_in_signal_handler();
              }),
              "Size: 12\n\nbad\n");
}

TEST_F(ConsoleTest, PrintsAreCountedAndReturnTheirLength) {
    const std::uint64_t before = write_count();
    printed_by([] {
        EXPECT_EQ(print("abc", 'R'), 3u);
        EXPECT_EQ(print_line("abc"), 4u);
        set_color('w');
    });
    EXPECT_EQ(write_count() - before, 2u);
}

TEST_F(ConsoleTest, HeldLockKeepsLinesTogether) {
    const std::string text = printed_by([] {
        std::vector<std::thread> threads;
        for (char name = 'a'; name < 'e'; name++)
            threads.emplace_back([name] {
                for (int i = 0; i < 200; i++) {
                    const std::lock_guard hold(lock());
                    print(std::string(1, name));
                    print_line(std::string(1, name));
                }
            });
        for (auto& thread : threads) thread.join();
    });
    ASSERT_EQ(text.size(), 3u * 800);
    for (std::size_t i = 0; i < text.size(); i += 3) {
        ASSERT_EQ(text[i], text[i + 1]);
        ASSERT_EQ(text[i + 2], '\n');
    }
}

TEST_F(ConsoleTest, ReadsLinesAndNumbersToTheEndOfInput) {
    talk("one\r\n\nlast", [] {
        EXPECT_EQ(read_line(), "one");
        EXPECT_EQ(read_line(), "");
        EXPECT_EQ(read_line(), "last");
        EXPECT_EQ(read_line(), std::nullopt);
        pause();
    });
    settings().colors_enabled = false;
    const std::string prompts = talk("99\n-5\n1k\n\nx5\n-\n7x\n  3", [] {  // until in range
        EXPECT_EQ(prompt_integer("option: ", 0, 10), 7);
        EXPECT_EQ(prompt_integer("option: ", 0, 10), 3);
        EXPECT_THROW(prompt_integer("option: ", 0, 10), EndOfInput);
    });
    EXPECT_EQ(prompts, "option: option: option: option: option: option: option: option: option: ");
}

TEST_F(ConsoleTest, ClosedDescriptorsAreOpenedBeforeAFileCanTakeThem) {
    const int saved = ::dup(STDOUT_FILENO);
    ::close(STDOUT_FILENO);
    secure_standard_streams();
    const int file = ::open("/dev/zero", O_RDONLY);
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
    EXPECT_GT(file, 2);
    ::close(file);
    std::signal(SIGPIPE, SIG_DFL);
}

TEST(Format, GroupsDigitsAndScalesBytes) {
    EXPECT_EQ(format_commas(std::uint64_t(0)), "0");
    EXPECT_EQ(format_commas(std::uint64_t(999)), "999");
    EXPECT_EQ(format_commas(std::uint64_t(1000)), "1,000");
    EXPECT_EQ(format_commas(~std::uint64_t(0)), "18,446,744,073,709,551,615");
    EXPECT_EQ(format_commas(std::int64_t(-123456)), "-123,456");
    EXPECT_EQ(format_commas(std::numeric_limits<std::int64_t>::min()), "-9,223,372,036,854,775,808");
    EXPECT_EQ(format_quotes(1234567), "1'234'567");
    EXPECT_EQ(format_bytes(1234567), "1,234,567 ( 1.18 MiB)");
    EXPECT_EQ(format_bytes(1536), "1,536 ( 1.50 KiB)");
    EXPECT_EQ(format_bytes(102370), "102,370 (  100 KiB)");
    EXPECT_EQ(format_bytes(std::uint64_t(123) << 30), "132,070,244,352 (  123 GiB)");
    EXPECT_EQ(format_bytes(~std::uint64_t(0)), "18,446,744,073,709,551,615 ( 16.0 EiB)");
}

}  // namespace
}  // namespace lumo::Console
