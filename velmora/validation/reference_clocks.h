/// The clocks of the machine against each other, from the start of a run to its end.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

/// One reading of the time stamp counter and of the system's clocks, in seconds.
struct ClockReading {
    static constexpr unsigned CLOCKS = 3;  ///< wall clock, monotonic clock, raw monotonic clock
    std::uint64_t ticks = 0;
    double seconds[CLOCKS] = {};

    static ClockReading now();
};

/// Ticks of the counter a second by each clock, between two readings.
struct ReferenceClocks {
    double hertz[ClockReading::CLOCKS] = {};
    /// "Passed"; "Failed" when the clocks differ by more than a hundredth; "Unable to Validate" for a stretch
    /// of less than a tenth of a second.
    const char* verdict = "Unable to Validate";

    ReferenceClocks(const ClockReading& start, const ClockReading& end);
    /// "Timer Sanity Check:", "Frequency Sanity Check:" and the lines of the clocks.
    std::vector<std::string> lines() const;
};

}  // namespace velmora
