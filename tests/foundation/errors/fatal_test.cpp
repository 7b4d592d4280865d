#include "lumo/foundation/errors/fatal.h"

#include <gtest/gtest.h>

#include "death_output.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/registration.h"

namespace lumo {
namespace {

class Fatal : public testing::Test {
 protected:
    void SetUp() override {
        testing::FLAGS_gtest_death_test_style = "threadsafe";
        Console::settings() = {.colors_enabled = false, .pause_on_fatal = false};
    }
    void TearDown() override { Console::settings() = Console::Settings(); }
};

TEST_F(Fatal, PathsPrintAndExitWithOne) {
    const auto dies = testing::ExitedWithCode(1);
    EXPECT_EXIT(dying([] { fatal_error("Broken."); }), dies,
                "\nBroken.\nFatal error encountered. Terminating program.\n");
    EXPECT_EXIT(dying([] { abort_with("Memory leak detected"); }), dies, "\nMemory leak detected\n");
    EXPECT_EXIT(dying([] { require(1 + 1 == 3, "Sum is wrong.", "f()"); }), dies,
                "\nSum is wrong.\nIn Function: f");
    EXPECT_EXIT(dying([] { exit_with_pause(3); }), testing::ExitedWithCode(3), "^$");
    EXPECT_EXIT(dying([] { capture_current_exception(); }), dies, "Exceptions not handled!");
}

TEST_F(Fatal, PauseAsksForEnterAndTakesTheEndOfInput) {
    EXPECT_EXIT(dying([] {
                    ASSERT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
                    Console::settings().pause_on_fatal = true;
                    abort_with("Broken.");
                }),
                testing::ExitedWithCode(1), "Press ENTER to continue . . .");
}

TEST_F(Fatal, ASecondRegistrationEndsTheProgram) {
    EXPECT_EXIT(dying([] { ExceptionRegistration<StdException> again; }), testing::ExitedWithCode(1),
                "Duplicate Exception Type");
}

}  // namespace
}  // namespace lumo
