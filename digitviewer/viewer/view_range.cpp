#include <algorithm>
#include <vector>

#include "digitviewer/files/digit_text.h"
#include "digitviewer/viewer/choices.h"
#include "digitviewer/viewer/questions.h"
#include "lumo/foundation/console/console.h"

namespace DigitViewer2 {

namespace Console = lumo::Console;

namespace {

constexpr upL_t MOST_DIGITS = 100000;
constexpr upL_t ROW_DIGITS = 50;
constexpr upL_t GROUP_DIGITS = 10;

/// Groups of ten, five a row, and the position of the row's last digit.
std::string rows_of(const std::string& text, upL_t offset) {
    std::string rows;
    for (upL_t at = 0; at < text.size(); at += ROW_DIGITS) {
        const upL_t length = std::min(ROW_DIGITS, text.size() - at);
        std::string row;
        for (upL_t i = 0; i < length; i += GROUP_DIGITS)
            row += text.substr(at + i, std::min(GROUP_DIGITS, length - i)) + " ";
        row.resize(ROW_DIGITS + ROW_DIGITS / GROUP_DIGITS, ' ');
        rows += row + " :  " + Console::format_commas(offset + at + length) + "\n";
    }
    return rows;
}

}  // namespace

void view_range(const Source& source) {
    const upL_t start = ask_number("Starting Digit: ", 1, ~upL_t(0)) - 1;
    const upL_t count = ask_number("Digits to View: ", 1, MOST_DIGITS);
    Console::new_line();
    if (!source.is_accessible(start, count)) return;
    std::string text(count, '\0');
    source.reader->read(source.parallel, text.data(), static_cast<lumo::spL_t>(start), count);
    text_of_values(source.reader->radix(), text.data(), text.data(), count);
    Console::print(rows_of(text, start), 'G');
    Console::set_color('w');
}

}  // namespace DigitViewer2
