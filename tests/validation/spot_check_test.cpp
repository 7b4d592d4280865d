// Known digits and the comparison with them.
#include "velmora/validation/spot_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console_talk.h"
#include "failures.h"
#include "plain_console.h"
#include "temp_folder.h"

namespace velmora {
namespace {

/// Digits that follow each other round and round.
class Cycle final : public DigitViewer2::BasicDigitReader {
 public:
    explicit Cycle(lumo::upL_t n) : count(n) {}
    lumo::upL_t radix() const override { return 10; }
    const std::string& first_digits() const override { return head; }
    lumo::upL_t digits() const override { return count; }
    void read(const lumo::ParallelContext&, char* out, lumo::spL_t offset, lumo::upL_t n) override {
        for (lumo::upL_t i = 0; i < n; i++)
            out[i] = static_cast<char>((static_cast<lumo::upL_t>(offset) + i) % 10);
    }

 private:
    const std::string head = "0.";
    const lumo::upL_t count;
};

std::string checked(const SpotChecks& checks, lumo::upL_t digits) {
    Cycle reader(digits);
    return checks.check(reader);
}

}  // namespace

TEST(SpotCheck, TakesTheLastWindowWithinTheDigits) {
    const PlainConsole plain;
    const SpotChecks checks(
        "# positions of the last digits\n20\t0123456789\n 30   56789 # five\n\n1000 89\r\n");
    EXPECT_EQ(checked(checks, 19), "Unavailable - No suitable spot check entry.");
    EXPECT_EQ(checked(checks, 20), "Good through 20");
    EXPECT_EQ(checked(checks, 999), "Good through 30");
    EXPECT_EQ(checked(checks, 5000), "Good through 1,000");
    EXPECT_EQ(checked(SpotChecks(""), 5000), "Unavailable - No suitable spot check entry.");
    EXPECT_EQ(checked(SpotChecks(), 5000), "Unavailable - Digit file not found.");
    const SpotChecks wrong("20000\t0123446789\n");
    std::string failure;
    EXPECT_EQ(lumo::printed_by([&] { failure = lumo::failure_of([&] { checked(wrong, 20000); }); }),
              "Spot Check:                 Mismatch at 19,996\n");
    EXPECT_THAT(failure, testing::MatchesRegex("AlgorithmFailedException.*: Spot check failed at: 19,996"));
}

TEST(SpotCheck, DigitFiles) {
    const auto error = [](const char* text) { return lumo::message_of([&] { SpotChecks{text}; }); };
    EXPECT_EQ(error("20 0123456789\n20 0123456789\n"), "Error parsing digit file: Duplicate entries.");
    for (const char* line :
         {"5 012345", "0 1", "x 1", "20", "20 12a", "20 12 3", "99999999999999999999 1", "-5 1"})
        EXPECT_EQ(error(line), std::string("Error parsing digit file: Invalid entry: ") + line);

    const lumo::TempFolder folder;
    folder.write("third.txt", "20 0123456789\n");
    EXPECT_FALSE(SpotChecks::load("half", {"absent/", folder.path.string() + "/"}).found());
    EXPECT_EQ(checked(SpotChecks::load("third", {"absent/", folder.path.string() + "/"}), 25),
              "Good through 20");
}

}  // namespace velmora
