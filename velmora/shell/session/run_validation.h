/// The record of a finished run.
#pragma once

#include <optional>

#include "velmora/shell/session/run_report.h"
#include "velmora/validation/reference_clocks.h"
#include "velmora/validation/validation_report.h"

namespace velmora {

/// What is read when a run begins, to be compared at its end.
struct RunStart {
    CpuTime cpu = CpuTime::now();
    ClockReading clocks = ClockReading::now();
    std::optional<upL_t> memory_errors;

    RunStart();
};

ValidationReport make_run_record(const NormalFloatSession& session, const EventLog& events,
                                 const RunStart& start, const RunOutcome& outcome);

/// Writes the validation file of the run into the output folder: `<constant> - <date>-<time>.txt`.
void save_run_record(const NormalFloatSession& session, const EventLog& events, const RunStart& start,
                     const RunOutcome& outcome);

}  // namespace velmora
