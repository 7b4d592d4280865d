#include "digitviewer/viewer/questions.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/status/linear_console.h"
#include "lumo/foundation/status/parallel_console_status.h"
#include "lumo/foundation/status/parallel_local.h"

namespace DigitViewer2 {

namespace Console = lumo::Console;

namespace {

constexpr std::chrono::milliseconds POLLING_PERIOD(200);

double seconds_now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

std::string ask_text(const char* question) {
    Console::print_line(question, 'w');
    std::optional<std::string> line = Console::read_line();
    if (!line) throw Console::EndOfInput();
    return *line;
}

upL_t ask_number(const char* question, upL_t least, upL_t most) {
    constexpr auto LIMIT = static_cast<upL_t>(std::numeric_limits<std::int64_t>::max());
    return static_cast<upL_t>(Console::prompt_integer(question,
                                                      static_cast<std::int64_t>(std::min(least, LIMIT)),
                                                      static_cast<std::int64_t>(std::min(most, LIMIT))));
}

upL_t ask_digits(const Source& source, const char* question) {
    const upL_t known = source.known_digits();
    if (known == 0) return ask_number((std::string(question) + ": ").c_str(), 1, ~upL_t(0));
    const upL_t digits = ask_number((std::string(question) + " (0 for all): ").c_str(), 0, known);
    return digits == 0 ? known : digits;
}

Work::Work(const char* heading, upL_t count) : digits(count), started(seconds_now()) {
    Console::new_line();
    const upL_t line_width = Console::status_width();
    if (Console::output_is_terminal()) {
        root = std::make_unique<lumo::ParallelLocalNode>();
        drawing = std::make_unique<lumo::ParallelConsoleStatus>(*root, POLLING_PERIOD, line_width);
    } else {
        root = std::make_unique<lumo::LinearConsoleNode>(line_width);
    }
    root->push_node({{'T', heading}, {'w', "  "}});
}

Work::~Work() {
    if (root) root->pop_frame();
}

void Work::finish() {
    root->pop_frame();
    drawing.reset();
    root.reset();
    const double seconds = seconds_now() - started;
    char text[64];
    std::snprintf(text, sizeof text, " digits in %.3f seconds", seconds);
    std::string line = Console::format_commas(digits) + text;
    const double millions = static_cast<double>(digits) / seconds / 1e6;
    if (seconds >= 0.001 && millions >= 1) {
        std::snprintf(text, sizeof text, "  ( %.0f million digits / second )", millions);
        line += text;
    }
    Console::print_line(line, 'w');
}

}  // namespace DigitViewer2
