#include "velmora/shell/session/phase_log.h"

#include "velmora/shell/session/time_report.h"

namespace velmora {

namespace {

/// Without blanks around it and a colon behind it.
std::string trimmed(const std::string& text) {
    const auto start = text.find_first_not_of(' ');
    return start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(" :") + 1 - start);
}

}  // namespace

void PhaseLog::push_node(lumo::ColorString text) {
    std::string whole;
    for (const lumo::ColorSegment& segment : text) whole += segment.text;
    const auto dots = whole.find("...");
    inner.push_node(std::move(text));
    if (!levels.empty()) levels.back().has_content = true;
    levels.push_back(
        {trimmed(whole.substr(0, dots)), events.elapsed(), dots != std::string::npos, whole.ends_with(' ')});
}

void PhaseLog::pop_frame() {
    inner.pop_frame();
    const Level ended = std::move(levels.back());
    levels.pop_back();
    if (!is_phase(ended)) return;
    const std::string part = levels.empty() ? "" : levels.front().name + ": ";
    events.log(part + ended.name + ": " + format_seconds(events.elapsed() - ended.start) + " seconds");
}

/// Whether a level is told, seen from those below it.
bool PhaseLog::is_phase(const Level& ended) const {
    if (levels.empty()) return ended.is_step || ended.has_content;
    return levels.size() == 1 && !levels.front().is_step && ended.is_step;
}

}  // namespace velmora
