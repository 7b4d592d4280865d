// The benchmark: its sizes, its options and its menu.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "console_talk.h"
#include "failures.h"
#include "plain_console.h"
#include "velmora/shell/bench/bench_action.h"
#include "velmora/shell/bench/size_tables.h"

using namespace velmora;
using testing::HasSubstr;

namespace {

const lumo::DetectedHardware MACHINE = lumo::detect_hardware();

std::unique_ptr<NormalFloatSession> parse(std::vector<std::string> options) {
    options.insert(options.begin(), "velmora");
    ArgumentList list(std::move(options));
    return parse_bench(MACHINE, list);
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
