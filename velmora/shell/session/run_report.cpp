#include "velmora/shell/session/run_report.h"

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "velmora/shell/session/session_cfg.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

void print_value(const char* label, const std::string& value) {
    Console::print(label);
    Console::print_line(value, 'G');
    Console::set_color('w');
}

void print_radix(const char* heading, const lumo::RadixReport& radix) {
    if (radix.digits == 0) return;
    Console::print_line(heading, 'T');
    Console::print_line(radix.first_digits, 'G');
    Console::print(radix.last.text(), 'G');
    Console::print_line("  :  " + Console::format_commas(radix.last.position()), 'w');
    if (!radix.path.empty()) Console::print_label_line("File", radix.path);
    Console::new_line();
}

/// Mixes the bits of a clock value (the finalizer of MurmurHash3, A. Appleby).
std::uint64_t mix(std::uint64_t x) {
    x = (x ^ (x >> 33)) * 0xff51afd7ed558ccd;
    x = (x ^ (x >> 33)) * 0xc4ceb9fe1a85ec53;
    return x ^ (x >> 33);
}

}  // namespace

std::uint64_t run_seed(double start) {
    return mix(static_cast<std::uint64_t>(1e6 * start));
}

std::uint64_t epoch_milliseconds(double start) {
    return static_cast<std::uint64_t>(1e3 * start);
}

void log_start(EventLog& events) {
    const double start = events.start();
    events.log("Start Time");
    events.log("seed              : " + std::to_string(run_seed(start)));
    events.log("date_start        : " + date_text(start));
    events.log("epoch_millis_start: " + std::to_string(epoch_milliseconds(start)));
}

void print_time_lines(double computation_seconds, double wall_seconds) {
    print_value("Total Computation Time:    ", format_seconds(computation_seconds) + " seconds");
    print_value("Start-to-End Wall Time:    ", format_seconds(wall_seconds) + " seconds");
}

void print_digits(const lumo::DigitReport& report) {
    std::lock_guard lock(Console::lock());
    Console::new_line();
    print_radix("Decimal Digits:", report.dec);
    print_radix("Hexadecimal Digits:", report.hex);
    for (const std::string& line : report.lines()) Console::print_line(line);
    Console::new_line();
}

void print_spot_check(const std::string& verdict) {
    print_value("Spot Check:                 ", verdict);
}

void print_end_report(const NormalFloatSession& session, const EventLog& events, const RunOutcome& outcome) {
    std::lock_guard lock(Console::lock());
    const double wall = outcome.wall_seconds;
    print_value("Start Date:            ", date_text(events.start()));
    print_value("End Date:              ", date_text(events.start() + wall));
    Console::new_line();
    print_time_lines(outcome.computation_seconds, wall);
    print_utilization(outcome.used, wall, session.parallelism().threads());
    Console::new_line();

    std::string settings = session_text(session);
    std::erase(settings, '\r');
    Console::print_line("Configuration Dump:");
    Console::print_line(settings);
    events.print();
}

}  // namespace velmora
