#include "lumo/foundation/errors/fatal.h"

#include <gtest/gtest.h>

#include "death_output.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo {
namespace {

TEST(FatalDeathTest, PathsPrintAndEndTheProgram) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    Console::settings().colors_enabled = false;
    const auto dies = testing::ExitedWithCode(1);
    EXPECT_EXIT(dying([] { fatal_error("Broken."); }), dies,
                "\nBroken.\nFatal error encountered. Terminating program.\n");
    EXPECT_EXIT(dying([] { abort_with("Memory leak detected"); }), dies, "\nMemory leak detected\n");
    EXPECT_EXIT(dying([] { require(1 + 1 == 3, "Sum is wrong.", "f()"); }), dies,
                "\nSum is wrong.\nIn Function: f");
    EXPECT_EXIT(dying([] { exit_with_pause(3); }), testing::ExitedWithCode(3), "^$");
    EXPECT_EXIT(dying([] { capture_current_exception(); }), dies, "Exceptions not handled!");
    EXPECT_EXIT(dying([] { register_exception("StdException", nullptr); }), dies, "Duplicate Exception Type");
    EXPECT_EXIT(dying([] {  // a pause takes the end of the input for an answer
                    ASSERT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
                    Console::settings().pause_on_fatal = true;
                    abort_with("Broken.");
                }),
                dies, "Press ENTER to continue . . .");
    Console::settings() = Console::Settings();
}

}  // namespace
}  // namespace lumo
