#include "velmora/shell/session/time_report.h"

#include <sys/resource.h>

#include <cstdio>

#include "lumo/foundation/console/console.h"

namespace velmora {

namespace {

double seconds_of(const timeval& t) {
    return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
}

}  // namespace

CpuTime CpuTime::now() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return {seconds_of(usage.ru_utime), seconds_of(usage.ru_stime)};
}

std::string format_seconds(double seconds) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", seconds);
    return text;
}

std::string utilization_text(const CpuTime& used, double wall, upL_t processors) {
    // Processor times advance in steps of up to a hundredth.
    if (!(wall >= 0.01)) return "Too Fast to Measure";
    const double whole = wall * static_cast<double>(processors) / 100;
    char text[96];
    std::snprintf(text, sizeof text, "%.2f %%  +  %.2f %% kernel overhead", used.user / whole,
                  used.kernel / whole);
    return text;
}

void print_utilization(const CpuTime& used, double wall, upL_t logical_cores) {
    std::lock_guard lock(lumo::Console::lock());
    lumo::Console::print("CPU Utilization:           ");
    lumo::Console::print_line(utilization_text(used, wall, 1), 'G');
    lumo::Console::set_color('w');
    lumo::Console::print("Multi-core Efficiency:     ");
    lumo::Console::print_line(utilization_text(used, wall, logical_cores), 'G');
    lumo::Console::set_color('w');
}

}  // namespace velmora
