#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plain_console.h"
#include "velmora/shell/entry/help.h"
#include "velmora/shell/entry/program_options.h"
#include "velmora/shell/entry/program_path.h"
#include "velmora/shell/entry/value_parsers.h"

using namespace velmora;

TEST(Arguments, CutAtTheFirstColonOnly) {
    ArgumentList list({"velmora", "custom:c:/formula.cfg", "-o", "a:b", ":"});
    EXPECT_EQ(list.current_key(), "custom");
    EXPECT_EQ(list.current_value(), "c:/formula.cfg");
    EXPECT_EQ(list.current_raw(), "custom:c:/formula.cfg");
    list.advance();
    EXPECT_EQ(list.current_key(), "-o");
    EXPECT_EQ(list.current_value(), "");
    list.advance();
    list.advance();
    EXPECT_EQ(list.current_key(), "");
    EXPECT_EQ(list.current_value(), "");
    list.advance();
    EXPECT_TRUE(list.at_end());
}

TEST(Arguments, NothingCanBeReadBehindTheEnd) {
    ArgumentList list({"velmora"});
    const auto refuses = [&](auto read) {
        try {
            read();
            ADD_FAILURE();
        } catch (const lumo::CommandLine::CommandLineException& failure) {
            EXPECT_STREQ(failure.what(), "Expected more parameters.");
        }
    };
    refuses([&] { list.current_key(); });
    refuses([&] { list.current_value(); });
    refuses([&] { list.current_raw(); });
    refuses([&] { list.advance(); });
    EXPECT_TRUE(ArgumentList({}).at_end());
}

TEST(Values, ByteSizes) {
    EXPECT_EQ(parse_byte_size("1.5G"), 1610612736u);
    EXPECT_EQ(parse_byte_size("1.5"), 1u);
    EXPECT_EQ(parse_byte_size(""), 0u);
    EXPECT_EQ(parse_byte_size(".5k"), 512u);
    EXPECT_EQ(parse_byte_size("3  m"), 3145728u);
    EXPECT_EQ(parse_byte_size("0.0001K"), 1u);
    EXPECT_EQ(parse_byte_size("2x"), 2u);
    EXPECT_EQ(parse_byte_size("1e"), std::uint64_t(1) << 60);
    EXPECT_EQ(parse_byte_size("16E"), ~std::uint64_t(0));
    EXPECT_EQ(parse_byte_size("15.9999999999999999999999999E"), ~std::uint64_t(0));
    EXPECT_EQ(parse_byte_size("99999999999999999999999"), ~std::uint64_t(0));
}

TEST(Values, PlainCountsAndSwitches) {
    EXPECT_EQ(parse_plain_count("12k"), 12u);
    EXPECT_EQ(parse_plain_count("-3"), 0u);
    EXPECT_EQ(parse_plain_count("18446744073709551615"), ~std::uint64_t(0));
    EXPECT_EQ(parse_plain_count("18446744073709551616"), ~std::uint64_t(0));
    for (const char* on : {"1", "-1", "5K"}) EXPECT_TRUE(parse_switch(on)) << on;
    for (const char* off : {"", "0", "-0", "on", "--1"}) EXPECT_FALSE(parse_switch(off)) << off;
}

TEST(GlobalOptions, StandInFrontAndOverrideEachOther) {
    const PlainConsole restored;
    ProgramOptions options;
    ArgumentList list({"velmora", "pause:1", "height:50", "PII:1", "skip-warnings", "colors:1", "priority:-2",
                       "PII", "pause:-1", "custom", "colors:0"});
    read_global_options(options, list);
    EXPECT_EQ(list.current_key(), "custom");
    EXPECT_EQ(options.pause_value, -1);
    EXPECT_EQ(options.priority_value, -2);
    EXPECT_TRUE(options.show_pii);
    EXPECT_TRUE(options.skip_warnings);
    EXPECT_TRUE(lumo::Console::settings().colors_enabled);
    EXPECT_TRUE(lumo::Console::settings().pause_on_fatal);

    ArgumentList second({"velmora", "colors", "PII:-1", "pause:-2", "priority"});
    read_global_options(options, second);
    EXPECT_FALSE(lumo::Console::settings().colors_enabled);
    EXPECT_FALSE(lumo::Console::settings().pause_on_fatal);
    EXPECT_FALSE(options.show_pii);
    EXPECT_EQ(options.priority_value, 0);
}

TEST(GlobalOptions, PauseAtExit) {
    const auto pauses = [](int value, int result) {
        ProgramOptions options;
        options.pause_value = value;
        return pauses_at_exit(options, result);
    };
    EXPECT_FALSE(pauses(0, 0));
    EXPECT_TRUE(pauses(0, 1));
    EXPECT_TRUE(pauses(1, 0));
    EXPECT_TRUE(pauses(7, 1));
    EXPECT_FALSE(pauses(-1, 0));
    EXPECT_TRUE(pauses(-1, 1));
    EXPECT_FALSE(pauses(-2, 0));
    EXPECT_FALSE(pauses(-2, 1));
}

TEST(ProgramPath, FolderKeepsItsSeparator) {
    EXPECT_EQ(folder_of("/a/b/velmora"), "/a/b/");
    EXPECT_EQ(folder_of("a\\velmora"), "a\\");
    EXPECT_EQ(folder_of("velmora"), "");
    EXPECT_THAT(read_program_path(), testing::EndsWith("/shell_tests"));
}
