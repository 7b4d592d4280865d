/// What a run prints about itself.
#pragma once

#include "lumo/radix/digit_report.h"
#include "velmora/shell/session/event_log.h"
#include "velmora/shell/session/normal_float_session.h"
#include "velmora/shell/session/time_report.h"

namespace velmora {

/// Enters the lines that identify the run: seed, date and milliseconds of the start.
void log_start(EventLog& events);

void print_time_lines(double computation_seconds, double wall_seconds);

/// First and last digits, counts, hashes, digests, and where the files are.
void print_digits(const lumo::DigitReport& report);

/// Dates, times and utilization of the whole run, then the settings and the event log.
void print_end_report(const NormalFloatSession& session, const EventLog& events, double computation_seconds,
                      const CpuTime& used);

}  // namespace velmora
