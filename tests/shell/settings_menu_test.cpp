#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console_talk.h"
#include "fake_constant.h"
#include "plain_console.h"
#include "velmora/shell/menus/compute_menu.h"
#include "velmora/shell/session/normal_float_session_b.h"

using namespace velmora;
using testing::HasSubstr;

namespace {

class SettingsMenu : public testing::Test {
 protected:
    std::string answer(const std::string& lines) {
        return lumo::talk(lines, [&] { ask_settings(session); });
    }

    const PlainConsole plain;
    const lumo::DetectedHardware machine = lumo::detect_hardware();
    NormalFloatSessionB session{machine, make_third()};
};

}  // namespace

TEST_F(SettingsMenu, ChangesReachTheSession) {
    answer("2\n1\n3\n99\n120\n4\n5\n7\n9\n0\n12\n0\n");
    EXPECT_STREQ(session.constant().algorithm().token, "other");
    EXPECT_EQ(session.decimal_digits(), 120u);
    EXPECT_FALSE(session.hex_enabled());
    EXPECT_EQ(session.output_kind(), lumo::OutputKind::none);
    EXPECT_FALSE(session.output_verify());
    EXPECT_EQ(session.parallelism().task_decomposition(), 12u);
    EXPECT_THAT(answer("4\n5\n49\n5\n1000\n7\n0\n"), HasSubstr("Invalid Digits per File"));
    EXPECT_EQ(session.output_kind(), lumo::OutputKind::lmd);
    EXPECT_EQ(session.digits_per_file(), 1000u);
    answer("5\n0\n");
    EXPECT_TRUE(session.hex_enabled());
    EXPECT_EQ(session.output_kind(), lumo::OutputKind::text);
    EXPECT_TRUE(session.output_verify());
}

TEST_F(SettingsMenu, FrameworksAndAllocatorsHaveSettingsOfTheirOwn) {
    const std::pair<const char*, const char*> cases[] = {
        {"8\n4\n1\n3\n0\n0\n", "Worker Threads:             3\n"},
        {"8\n4\n2\n0\n0\n", "Thread Randomization:       Disabled\n"},
        {"8\n2\n1\n2\n8\n0\n0\n", "std::launch::async | std::launch::deferred\n"},
        {"8\n2\n1\n2\n1\n0\n0\n", "Max Sequential Dispatch:    4\n"},
        {"8\n3\n1\n0\n0\n0\n", "Worker Threads:             Unlimited\n"},
        {"8\n0\n0\n", "None (No Multi-threading)  ->  "},
        {"10\n1\n1\n2\n0\n0\n", "Large Pages:                Forced\n"},
        {"10\n2\n1\n2\n0\n0\n0\n", "Page Mapping:               Round-Robin\n"},
        {"10\n0\n0\n", "Memory Allocator:       C malloc()\n"},
    };
    for (const auto& [answers, text] : cases) EXPECT_THAT(answer(answers), HasSubstr(text)) << answers;
}

TEST_F(SettingsMenu, ARefusedValueLeavesTheSettingAsItWas) {
    session.set_output_path(testing::TempDir());
    const std::string path = session.output_path();
    EXPECT_THAT(answer("6\n/proc/version\n0\n"), HasSubstr("Path is not writable."));
    EXPECT_EQ(session.output_path(), path);
    EXPECT_THAT(answer("11\n/dev/null/x\n0\n"), HasSubstr("Unable to write file.\nNot a directory\n"));
    for (const char* nameless : {"11\n\n0\n", "11\n/dev/\n0\n", "11\n.cfg\n0\n"})
        EXPECT_THAT(answer(nameless), HasSubstr("\nNo file name was given.\n"));
}
