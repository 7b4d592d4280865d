/// How long a run took and how much of the processors it used.
#pragma once

#include <string>

#include "lumo/foundation/types/types.h"

namespace velmora {

using lumo::upL_t;

/// Seconds of processor time of this process.
struct CpuTime {
    double user = 0;
    double kernel = 0;

    static CpuTime now();
    CpuTime operator-(const CpuTime& earlier) const { return {user - earlier.user, kernel - earlier.kernel}; }
};

/// "12.345".
std::string format_seconds(double seconds);
/// "182.75 %  +  1.31 % kernel overhead": user and kernel time in percent of `processors` processors for
/// `wall` seconds. "Too Fast to Measure" below a hundredth of a second.
std::string utilization_text(const CpuTime& used, double wall, upL_t processors);

/// Prints the lines "CPU Utilization:" and "Multi-core Efficiency:".
void print_utilization(const CpuTime& used, double wall, upL_t logical_cores);

}  // namespace velmora
