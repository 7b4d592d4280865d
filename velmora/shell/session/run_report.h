/// What a run prints about itself.
#pragma once

#include "lumo/radix/digit_report.h"
#include "velmora/shell/session/event_log.h"
#include "velmora/shell/session/normal_float_session.h"
#include "velmora/shell/session/time_report.h"

namespace velmora {

/// What a run has come to.
struct RunOutcome {
    lumo::DigitReport digits;
    std::string spot_check;  ///< the verdict
    double computation_seconds = 0;
    double wall_seconds = 0;
    CpuTime used;
};

/// What tells one run from others: a number mixed from the time of its start, and that time.
std::uint64_t run_seed(double start);
std::uint64_t epoch_milliseconds(double start);

/// Enters the lines that identify the run: seed, date and milliseconds of the start.
void log_start(EventLog& events);

void print_time_lines(double computation_seconds, double wall_seconds);

/// First and last digits, counts, hashes, digests, and where the files are.
void print_digits(const lumo::DigitReport& report);

/// What the comparison with known digits came to.
void print_spot_check(const std::string& verdict);

/// Dates, times and utilization of the whole run, then the settings and the event log.
void print_end_report(const NormalFloatSession& session, const EventLog& events, const RunOutcome& outcome);

}  // namespace velmora
