#include "lumo/foundation/status/color_string.h"

#include <cstdio>
#include <limits>

#include "lumo/foundation/console/console.h"

namespace lumo {

upL_t width_of(const ColorString& text) {
    upL_t width = 0;
    for (const ColorSegment& segment : text) width += segment.text.size();
    return width;
}

bool runs_together(const ColorString& text, const ColorString& next) {
    if (text.empty() || next.empty() || text.back().text.empty()) return false;
    return text.back().text.back() != ' ' && !next.front().text.starts_with(' ');
}

void append(ColorString& text, const ColorString& next) {
    if (runs_together(text, next)) text.push_back({' ', " "});
    text.insert(text.end(), next.begin(), next.end());
}

upL_t print_within(const ColorString& text, upL_t line_width) {
    const std::lock_guard hold(Console::lock());
    upL_t width = 0;
    for (const ColorSegment& segment : text) {
        if (segment.text.size() > line_width - width) break;
        width += Console::print(segment.text, segment.color);
    }
    Console::set_color('w');
    return width;
}

void print(const ColorString& text) {
    print_within(text, std::numeric_limits<upL_t>::max());
}

void print_line(const ColorString& text) {
    const std::lock_guard hold(Console::lock());
    print(text);
    Console::new_line();
}

ColorString progress_text(upL_t done, upL_t total, double seconds) {
    const double percent =
        total == 0 ? 100.0 : 100.0 * static_cast<double>(done) / static_cast<double>(total);
    char share[32];
    std::snprintf(share, sizeof share, "  ( %.1f%% )  ", percent);
    ColorString text = {{'G', Console::format_commas(done)},
                        {'w', " / "},
                        {'G', Console::format_commas(total)},
                        {'w', share}};
    // Of a row that is too wide the end is dropped: what is wanted most stands first, and commas go with what
    // they lead.
    std::string lead;
    if (done != 0 && done < total && seconds >= 1) {
        const double rate = static_cast<double>(done) / seconds;
        text.push_back({'g', format_elapsed(static_cast<double>(total - done) / rate) + " left"});
        lead = ", ";
        if (rate >= 1e6) {
            char speed[32];
            std::snprintf(speed, sizeof speed, ", %.0f M/s", rate / 1e6);
            text.push_back({'g', speed});
        }
    }
    text.push_back({'g', lead + format_elapsed(seconds)});
    return text;
}

std::string format_elapsed(double seconds) {
    char text[48];
    if (seconds < 59.95) {
        std::snprintf(text, sizeof text, "%.1f s", seconds);
        return text;
    }
    const auto whole = static_cast<unsigned long long>(seconds + 0.5);
    const unsigned long long days = whole / 86400, hours = whole / 3600 % 24;
    const unsigned long long minutes = whole / 60 % 60, rest = whole % 60;
    if (days > 0)
        std::snprintf(text, sizeof text, "%llud %02llu:%02llu:%02llu", days, hours, minutes, rest);
    else
        std::snprintf(text, sizeof text, "%llu:%02llu:%02llu", hours, minutes, rest);
    return text;
}

}  // namespace lumo
