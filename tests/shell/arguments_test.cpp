#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "failures.h"
#include "plain_console.h"
#include "velmora/shell/entry/help.h"
#include "velmora/shell/entry/program_options.h"
#include "velmora/shell/entry/value_parsers.h"

using namespace velmora;

TEST(Arguments, CutAtTheFirstColonOnly) {
    ArgumentList list({"velmora", "custom:c:/formula.cfg", ":"});
    EXPECT_EQ(list.current_key(), "custom");
    EXPECT_EQ(list.current_value(), "c:/formula.cfg");
    EXPECT_EQ(list.current_raw(), "custom:c:/formula.cfg");
    list.advance();
    EXPECT_EQ(list.current_key() + list.current_value(), "");
    list.advance();
    EXPECT_TRUE(list.at_end());
    EXPECT_EQ(lumo::message_of([&] { list.current_key(); }), "Expected more parameters.");
    EXPECT_EQ(lumo::message_of([&] { list.current_raw(); }), "Expected more parameters.");
    EXPECT_EQ(lumo::message_of([&] { list.advance(); }), "Expected more parameters.");
    EXPECT_TRUE(ArgumentList({}).at_end());
}

TEST(Values, CountsSizesAndSwitches) {
    constexpr std::uint64_t LARGEST = ~std::uint64_t(0);
    const std::pair<const char*, std::uint64_t> sizes[] = {
        {"1.5G", 1610612736},
        {"1.5", 1},
        {"", 0},
        {".5k", 512},
        {"3  m", 3145728},
        {"0.0001K", 1},
        {"2x", 2},
        {"1e", std::uint64_t(1) << 60},
        {"16E", LARGEST},
        {"15.9999999999999999999999999E", LARGEST},
        {"99999999999999999999999", LARGEST},
    };
    for (const auto& [text, bytes] : sizes) EXPECT_EQ(parse_byte_size(text), bytes) << text;
    EXPECT_EQ(parse_plain_count("12k"), 12u);
    EXPECT_EQ(parse_plain_count("-3"), 0u);
    EXPECT_EQ(parse_plain_count("18446744073709551616"), LARGEST);
    for (const char* on : {"1", "-1", "5K"}) EXPECT_TRUE(parse_switch(on)) << on;
    for (const char* off : {"", "0", "-0", "on", "--1"}) EXPECT_FALSE(parse_switch(off)) << off;
}

TEST(GlobalOptions, StandInFrontAndOverrideEachOther) {
    const PlainConsole restored;
    const lumo::Console::Settings& console = lumo::Console::settings();
    ProgramOptions options;
    ArgumentList list({"velmora", "pause:1", "height:50", "PII:1", "skip-warnings", "colors:1", "priority:-2",
                       "PII", "pause:-1", "custom", "colors:0"});
    read_global_options(options, list);
    EXPECT_EQ(list.current_key(), "custom");
    EXPECT_EQ(options.pause_value, -1);
    EXPECT_EQ(options.priority_value, -2);
    EXPECT_TRUE(options.show_pii && options.skip_warnings);
    EXPECT_TRUE(console.colors_enabled && console.pause_on_fatal);

    ArgumentList second({"velmora", "colors", "PII:-1", "pause:-2", "priority"});
    read_global_options(options, second);
    EXPECT_FALSE(console.colors_enabled || console.pause_on_fatal || options.show_pii);
    EXPECT_EQ(options.priority_value, 0);
}

TEST(GlobalOptions, PauseAtExit) {
    struct {
        int value;
        bool after_success, after_failure;
    } const cases[] = {
        {0, false, true}, {1, true, true}, {7, true, true}, {-1, false, true}, {-2, false, false}};
    for (const auto& [value, after_success, after_failure] : cases) {
        ProgramOptions options;
        options.pause_value = value;
        EXPECT_EQ(pauses_at_exit(options, 0), after_success) << value;
        EXPECT_EQ(pauses_at_exit(options, 1), after_failure) << value;
    }
}
