#include "velmora/shell/session/run_validation.h"

#include <ctime>

#include "lumo/foundation/console/console.h"
#include "velmora/shell/entry/version.h"
#include "velmora/shell/session/run_report.h"
#include "velmora/shell/session/session_cfg.h"
#include "velmora/validation/machine_lines.h"
#include "velmora/validation/spot_check.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

using Lines = std::vector<std::string>;

Lines constant_lines(const NormalFloatSession& session) {
    const upL_t hex = session.hex_digits();
    return {
        "Constant:              " + session.constant_name(),
        "Algorithm:             " + session.algorithm_name(),
        "Decimal Digits:        " + Console::format_commas(session.decimal_digits()),
        "Hexadecimal Digits:    " + (hex == 0 ? std::string("Disabled") : Console::format_commas(hex)),
    };
}

Lines computation_lines(const NormalFloatSession& session) {
    return {
        std::string("Computation Mode:      ") + session.mode_name(),
        "Threading Mode:        " + session.parallelism().summary_string(),
        "Working Memory:        " + Console::format_bytes(session.estimate().working_bytes),
        "Total Memory:          " + Console::format_bytes(session.estimate().total_bytes()),
    };
}

Lines time_lines(const NormalFloatSession& session, const EventLog& events, const RunOutcome& outcome) {
    const double wall = outcome.wall_seconds;
    return {
        "Start Date:            " + date_text(events.start()),
        "End Date:              " + date_text(events.start() + wall),
        "",
        "Total Computation Time:    " + format_seconds(outcome.computation_seconds) + " seconds",
        "Start-to-End Wall Time:    " + format_seconds(wall) + " seconds",
        "",
        "CPU Utilization:           " + utilization_text(outcome.used, wall, 1),
        "Multi-core Efficiency:     " + utilization_text(outcome.used, wall, session.parallelism().threads()),
    };
}

void append_radix(Lines& lines, const char* heading, const lumo::RadixReport& radix) {
    if (radix.digits == 0) return;
    lines.insert(lines.end(),
                 {heading, radix.first_digits,
                  radix.last.text() + "  :  " + Console::format_commas(radix.last.position()), ""});
}

Lines digit_lines(const lumo::DigitReport& report) {
    Lines lines;
    append_radix(lines, "Last Decimal Digits:", report.dec);
    append_radix(lines, "Last Hexadecimal Digits:", report.hex);
    const Lines statistics = report.lines();
    lines.insert(lines.end(), statistics.begin(), statistics.end());
    return lines;
}

std::string memory_error_text(const RunStart& start) {
    const auto now = corrected_memory_errors();
    if (!now || !start.memory_errors || *now < *start.memory_errors) return "Unknown";
    return Console::format_commas(*now - *start.memory_errors);
}

Lines sanity_lines(const RunStart& start, const RunOutcome& outcome) {
    const bool compared = SpotChecks::passed(outcome.spot_check);
    Lines lines = {"Spot Check:                 " + (compared ? outcome.spot_check : "Not Available")};
    const Lines clocks = ReferenceClocks(start.clocks, ClockReading::now()).lines();
    lines.insert(lines.end(), clocks.begin(), clocks.end());
    lines.insert(lines.end(), {"Is Debugger Present:        Unknown", "Is Contiguous:              Yes",
                               "ECC Recovered Errors:       " + memory_error_text(start),
                               std::string("Colors:                     ") +
                                   (Console::settings().colors_enabled ? "Yes" : "No")});
    return lines;
}

/// "<folder><constant> - 20260214-093015".
std::string record_base(const NormalFloatSession& session, const EventLog& events) {
    const auto whole = static_cast<std::time_t>(events.start());
    std::tm local{};
    ::localtime_r(&whole, &local);
    char date[32];
    std::strftime(date, sizeof date, " - %Y%m%d-%H%M%S", &local);
    return session.output_path() + session.constant().file_name() + date;
}

}  // namespace

RunStart::RunStart() : memory_errors(corrected_memory_errors()) {}

ValidationReport make_run_record(const NormalFloatSession& session, const EventLog& events,
                                 const RunStart& start, const RunOutcome& outcome) {
    ValidationReport report;
    report.program = build_text();
    report.tuning = tuning_text();
    report.user = user_name();
    report.machine = machine_lines(session.hardware());
    report.constant = constant_lines(session);
    report.computation = computation_lines(session);
    report.configuration = session_text(session);
    report.times = time_lines(session, events, outcome);
    report.digits = digit_lines(outcome.digits);
    report.sanity = sanity_lines(start, outcome);
    report.events = events.lines();
    report.record[0] = run_seed(events.start());
    report.record[1] = epoch_milliseconds(events.start());
    return report;
}

void save_run_record(const NormalFloatSession& session, const EventLog& events, const RunStart& start,
                     const RunOutcome& outcome) {
    save_validation_file(record_base(session, events),
                         make_validation_text(make_run_record(session, events, start, outcome)));
}

}  // namespace velmora
