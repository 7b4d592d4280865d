/// Print primitives. All console output of the program goes through these: each takes the one recursive
/// console lock for its whole duration, writes, flushes and counts.
///
/// Colour letters: B G P R T Y bright, b g p r t y normal, ' ' leaves the colour, everything else white.
#pragma once

#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumo::Console {

/// Written on the main thread before any worker exists, read-only afterwards.
struct Settings {
    bool colors_enabled = true;
    bool pause_on_fatal = true;
};
Settings& settings();

/// The console lock. A caller that wants several prints to stay together holds it across them.
std::recursive_mutex& lock();
/// Number of primitive prints so far. A status display compares it to see whether others have written.
std::uint64_t write_count();

/// To be called first in main(). Opens /dev/null on standard descriptors that are closed, so that no data
/// file can land on descriptor 1 and receive messages, and ignores the signal of a broken pipe: a run of
/// months must not die because the reader of its messages has gone. Failures to write are never checked.
void secure_standard_streams();

/// Whether stdout is a terminal, on which a display may be redrawn in place.
bool output_is_terminal();
/// Columns of a row of status: 79, or those that fit a narrower terminal.
std::size_t status_width();

void set_color(char letter);
void reset_color();
/// The reset sequence by one write(), without the lock: safe in a signal handler.
void reset_color_in_signal_handler() noexcept;
/// Returns the length of the text.
std::size_t print(std::string_view text, char letter = ' ');
std::size_t print_line(std::string_view text = {}, char letter = ' ');
void new_line();
/// "label: value", the value in its letter. With the letter ' ' no colour is touched.
void print_label(std::string_view label, std::string_view value, char letter = ' ');
void print_label_line(std::string_view label, std::string_view value, char letter = ' ');
/// The channel of all warnings and fatal messages.
void print_error(std::string_view text, bool keep_color = false);

/// One line of stdin without its line end; nothing at the end of the input.
std::optional<std::string> read_line(char letter = 'T');
/// The same after a prompt. Throws EndOfInput at the end of the input.
std::string read_answer(std::string_view prompt, char letter = 'T');
/// Reads an optional '-', digits and one suffix K, M, B or T; 0 when the line does not start so.
/// Throws EndOfInput at the end of the input.
std::int64_t read_integer(std::string_view prompt, char letter = 'T');
/// Prompts until a number within [min, max] is given: a line without one chooses nothing. Throws EndOfInput
/// at the end of the input.
std::int64_t prompt_integer(std::string_view prompt, std::int64_t min, std::int64_t max, char letter = 'T');
/// Lists names under a title and asks for the number of one, from 0. Throws EndOfInput at the end of the
/// input.
std::size_t choose(std::string_view title, const std::vector<std::string>& names);
/// Shows "Press ENTER to continue . . ." and reads a line; the end of the input counts as ENTER.
void pause(char letter = 'w');

/// The input ended while an answer was needed.
class EndOfInput : public std::exception {
 public:
    const char* what() const noexcept override { return "Unexpected end of input at a prompt."; }
};

/// 1234567 -> "1,234,567".
std::string format_commas(std::uint64_t n);
std::string format_commas(std::int64_t n);
/// 1234567 -> "1'234'567".
std::string format_quotes(std::uint64_t n);
/// The exact count and three significant digits: "1,234,567 ( 1.18 MiB)".
std::string format_bytes(std::uint64_t bytes);

}  // namespace lumo::Console
