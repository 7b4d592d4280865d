#include "lumo/foundation/console/console.h"
#include "velmora/shell/bench/bench_action.h"
#include "velmora/shell/bench/size_tables.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

constexpr const char* BINARY_ROW = "I prefer SuperPi sizes... (1M, 2M, 4M...)";

std::string left(std::string text, std::size_t columns) {
    if (text.size() < columns) text.resize(columns, ' ');
    return text;
}

std::string right(const std::string& text, std::size_t columns) {
    return text.size() < columns ? std::string(columns - text.size(), ' ') + text : text;
}

int ask(std::size_t last) {
    return static_cast<int>(Console::prompt_integer("option: ", 0, static_cast<std::int64_t>(last)));
}

void ask_threads(NormalFloatSession& session) {
    Console::print_line("Select a Benchmark Type:", 'w');
    Console::print_line("  0         Single-Threaded");
    Console::print_line("  1         Multi-Threaded");
    Console::new_line();
    if (ask(1) == 0) session.set_framework("none");
    Console::new_line();
}

/// The sizes with the memory that each takes; behind the last one a row for the other table, if there is one.
void print_sizes(NormalFloatSession& session, std::span<const BenchmarkSize> sizes, bool offer_binary) {
    std::lock_guard lock(Console::lock());
    Console::print_line("Option      Decimal Digits          Approx. Memory Needed", 'T');
    for (std::size_t i = 0; i < sizes.size(); i++) {
        session.set_decimal_digits(sizes[i].digits);
        const MemoryEstimate& estimate = session.estimate();
        Console::print(left("  " + std::to_string(i), 8), 'G');
        Console::print(right(Console::format_commas(sizes[i].digits), 18) + "          ", 'w');
        Console::print_line((estimate.problem.empty() ? "" : "at least ") +
                            Console::format_bytes(estimate.total_bytes()));
    }
    if (offer_binary) {
        Console::print(left("  " + std::to_string(sizes.size()), 12), 'G');
        Console::print_line(BINARY_ROW, 'w');
    }
    Console::new_line();
}

upL_t ask_size(NormalFloatSession& session) {
    const auto decimal = decimal_sizes();
    print_sizes(session, decimal, true);
    const auto choice = static_cast<std::size_t>(ask(decimal.size()));
    if (choice < decimal.size()) return decimal[choice].digits;
    Console::new_line();
    const auto binary = binary_sizes();
    print_sizes(session, binary, false);
    return binary[static_cast<std::size_t>(ask(binary.size() - 1))].digits;
}

}  // namespace

int run_bench_menu(Program& program) {
    Console::print_line("Benchmark Pi:", 'P');
    Console::new_line();
    const auto session = make_benchmark_session(program.hardware);
    if (program.hardware.topology.logical_cores() > 1) ask_threads(*session);
    Console::print("Available Memory:   ", 'w');
    Console::print_line(Console::format_bytes(program.hardware.memory.usable), 'G');
    Console::new_line();
    return run_benchmark(*session, ask_size(*session));
}

}  // namespace velmora
