#include "velmora/validation/reference_clocks.h"

#include <x86intrin.h>

#include <algorithm>
#include <ctime>

#include "lumo/foundation/console/console.h"

namespace velmora {

namespace {

constexpr double SHORTEST_SECONDS = 0.1;
constexpr double MOST_DIFFERENCE = 0.01;

double seconds_of(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

std::string frequency_text(double hertz) {
    if (!(hertz > 0)) return "Unknown";
    return lumo::Console::format_commas(static_cast<std::uint64_t>(hertz)) + " Hz";
}

}  // namespace

ClockReading ClockReading::now() {
    return {__rdtsc(),
            {seconds_of(CLOCK_REALTIME), seconds_of(CLOCK_MONOTONIC), seconds_of(CLOCK_MONOTONIC_RAW)}};
}

ReferenceClocks::ReferenceClocks(const ClockReading& start, const ClockReading& end) {
    bool long_enough = end.ticks > start.ticks;
    for (unsigned i = 0; i < ClockReading::CLOCKS; i++) {
        const double seconds = end.seconds[i] - start.seconds[i];
        long_enough = long_enough && seconds >= SHORTEST_SECONDS;
        if (seconds > 0) hertz[i] = static_cast<double>(end.ticks - start.ticks) / seconds;
    }
    if (!long_enough) {
        // A clock that was set back, against others that went on, is a failure and no short run.
        const double longest = end.seconds[1] - start.seconds[1];
        if (longest >= SHORTEST_SECONDS) verdict = "Failed";
        return;
    }
    const auto [lowest, highest] = std::minmax_element(std::begin(hertz), std::end(hertz));
    verdict = *highest <= *lowest * (1 + MOST_DIFFERENCE) ? "Passed" : "Failed";
}

std::vector<std::string> ReferenceClocks::lines() const {
    return {
        std::string("Timer Sanity Check:         ") + verdict,
        "Frequency Sanity Check:     Disabled in this version of velmora",
        "Reference Clock:            " + frequency_text(hertz[2]),
        "Reference Clock 0:          " + frequency_text(hertz[0]),
        "Reference Clock 1:          " + frequency_text(hertz[1]),
        "Reference Clock 2:          " + frequency_text(hertz[2]),
    };
}

}  // namespace velmora
