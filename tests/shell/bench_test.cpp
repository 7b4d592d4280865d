// The benchmark: its sizes, its options and the comparison with known digits.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "console_talk.h"
#include "failures.h"
#include "plain_console.h"
#include "temp_folder.h"
#include "velmora/shell/bench/bench_action.h"
#include "velmora/shell/bench/size_tables.h"
#include "velmora/shell/bench/spot_check.h"

using namespace velmora;
using testing::HasSubstr;

namespace {

const lumo::DetectedHardware MACHINE = lumo::detect_hardware();

std::unique_ptr<NormalFloatSession> parse(std::vector<std::string> options) {
    options.insert(options.begin(), "velmora");
    ArgumentList list(std::move(options));
    return parse_bench(MACHINE, list);
}

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

TEST(BenchSizes, KeysAndDigits) {
    EXPECT_EQ(decimal_sizes().size(), 16u);
    EXPECT_EQ(binary_sizes().size(), 18u);
    std::set<std::string> keys;
    for (const auto sizes : {decimal_sizes(), binary_sizes()}) {
        lumo::upL_t last = 0;
        for (const BenchmarkSize& size : sizes) {
            EXPECT_LT(last, size.digits);
            last = size.digits;
            EXPECT_TRUE(keys.insert(size.key).second);
            EXPECT_EQ(parse({size.key})->decimal_digits(), size.digits);
        }
    }
    EXPECT_EQ(benchmark_digits("2.5t"), 2500000000000u);
    EXPECT_EQ(benchmark_digits("128G"), 137438953472u);
    EXPECT_EQ(benchmark_digits("1M"), 1048576u);
    for (const char* none : {"1m", "25M", "1B", "", "10m"}) EXPECT_FALSE(benchmark_digits(none)) << none;
}

TEST(BenchOptions, InAnyOrder) {
    for (const auto& options : {std::vector<std::string>{"50m", "-TD:24", "-PF:spawn", "-MA:malloc", "-od:0"},
                                {"-od", "-MA:malloc", "1M", "-PF:spawn", "-TD:24", "50m"}}) {
        const auto session = parse(options);
        EXPECT_EQ(session->decimal_digits(), 50000000u);
        EXPECT_EQ(session->constant_name(), "Pi");
        EXPECT_STREQ(session->constant().algorithm().token, "chudnovsky");
        EXPECT_FALSE(session->hex_enabled());
        EXPECT_EQ(session->output_kind(), lumo::OutputKind::none);
        EXPECT_EQ(session->parallelism().task_decomposition(), 24u);
        EXPECT_STREQ(session->parallelism().framework().name(), "spawn");
        EXPECT_STREQ(session->allocator().name(), "malloc");
    }
    EXPECT_EQ(parse({"25m"})->output_kind(), lumo::OutputKind::text);
    EXPECT_EQ(lumo::message_of([] { parse({"-TD:4"}); }), "No benchmark size selected.");
    EXPECT_EQ(lumo::message_of([] {
                  parse({"1M", "-TD:0"});
              }),
              "Task decomposition must be between 1 and 65,536.");
}

TEST(BenchMenu, AsksForThreadsAndSize) {
    const PlainConsole plain;
    Program program{ArgumentList({}), {}, {}, {}, MACHINE};
    program.hardware.topology.cores.resize(2);
    const auto dialogue = [&](const std::string& answers) {
        std::string text;
        EXPECT_THROW(text = lumo::talk(answers, [&] { run_bench_menu(program); }), lumo::Console::EndOfInput);
        return lumo::talk(answers + "\n13\n", [&] { EXPECT_EQ(run_bench_menu(program), 1); });
    };
    // The largest sizes that no machine of today holds: the run is refused, the settings are shown.
    std::string text = dialogue("0\n16\n99");
    EXPECT_THAT(text, HasSubstr("Benchmark Pi:\n"));
    EXPECT_THAT(text, HasSubstr("  0         Single-Threaded\n  1         Multi-Threaded\n"));
    EXPECT_THAT(text, HasSubstr("Available Memory:   "));
    EXPECT_THAT(text, HasSubstr("Option      Decimal Digits          Approx. Memory Needed\n"));
    EXPECT_THAT(text, HasSubstr("I prefer SuperPi sizes... (1M, 2M, 4M...)\n"));
    EXPECT_THAT(text, HasSubstr("Decimal Digits:        8,589,934,592\n"));
    EXPECT_THAT(text, HasSubstr("Threading Mode:        None"));

    program.hardware.topology.cores.resize(1);
    text = lumo::talk("15\n", [&] { EXPECT_EQ(run_bench_menu(program), 1); });
    EXPECT_THAT(text, testing::Not(HasSubstr("Select a Benchmark Type:")));
    EXPECT_THAT(text, HasSubstr("Decimal Digits:        2,500,000,000,000\n"));
}

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
