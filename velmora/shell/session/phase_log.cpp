#include "velmora/shell/session/phase_log.h"

#include "velmora/shell/session/time_report.h"

namespace velmora {

void PhaseLog::push_node(lumo::ColorString text) {
    if (depth++ == 0) {
        name.clear();
        for (const lumo::ColorSegment& segment : text) name += segment.text;
        const auto dots = name.find("...");
        // What only announces others, as a title does, is no phase.
        name.resize(dots == std::string::npos ? 0 : dots);
        start = events.elapsed();
    }
    inner.push_node(std::move(text));
}

void PhaseLog::pop_frame() {
    inner.pop_frame();
    if (--depth == 0 && !name.empty())
        events.log(name + ": " + format_seconds(events.elapsed() - start) + " seconds");
}

}  // namespace velmora
