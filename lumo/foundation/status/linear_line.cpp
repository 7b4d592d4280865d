#include "lumo/foundation/status/linear_line.h"

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/status/color_string.h"

namespace lumo {

void LinearLine::write(const ColorString& text, upL_t level) {
    const std::lock_guard hold(Console::lock());
    const upL_t width = width_of(text);
    if (width == 0 || (level > 1 && !afford(width))) return;
    const upL_t gap = runs_together(last_text, text) ? 1 : 0;
    if (level <= 1 || column + gap + width > line_width) end_line();
    put(text);
}

void LinearLine::write_row(const ColorString& text) {
    const std::lock_guard hold(Console::lock());
    end_line();
    put(text);
    end_line();
}

void LinearLine::finish() {
    const std::lock_guard hold(Console::lock());
    end_line();
}

bool LinearLine::afford(upL_t width) {
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<double> since = now - refilled;
    refilled = now;
    allowance = std::min(ALLOWANCE_LIMIT, allowance + since.count() * ALLOWANCE_PER_SECOND);
    if (allowance < static_cast<double>(width)) return false;
    allowance -= static_cast<double>(width);
    return true;
}

void LinearLine::end_line() {
    if (column > 0 && last_count == Console::write_count()) Console::new_line();
    column = 0;
}

void LinearLine::put(const ColorString& text) {
    if (last_count != Console::write_count()) column = 0;
    if (column > 0 && runs_together(last_text, text)) column += Console::print(" ");
    print(text);
    column += width_of(text);
    last_text = text;
    last_count = Console::write_count();
}

}  // namespace lumo
