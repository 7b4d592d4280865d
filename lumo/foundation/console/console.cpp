#include "lumo/foundation/console/console.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>

#include "lumo/foundation/console/parse_counts.h"

namespace lumo::Console {

namespace {

constexpr char RESET_SEQUENCE[] = "\x1b[39;49m";

std::atomic<std::uint64_t> prints{0};

/// Holds the console lock. A mutex error inside the noexcept constructor ends the process at once: without
/// the lock nothing can be told in order.
class Hold {
 public:
    Hold() noexcept { lock().lock(); }
    ~Hold() { lock().unlock(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
};

const char* color_sequence(char letter) {
    switch (letter) {
        case 'B':
            return "\x1b[01;34m";
        case 'G':
            return "\x1b[01;32m";
        case 'P':
            return "\x1b[01;35m";
        case 'R':
            return "\x1b[01;31m";
        case 'T':
            return "\x1b[01;36m";
        case 'Y':
            return "\x1b[01;33m";
        case 'b':
            return "\x1b[22;34m";
        case 'g':
            return "\x1b[22;32m";
        case 'p':
            return "\x1b[22;35m";
        case 'r':
            return "\x1b[22;31m";
        case 't':
            return "\x1b[22;36m";
        case 'y':
            return "\x1b[22;33m";
        default:
            return "\x1b[01;37m";
    }
}

bool starts_with_number(std::string_view line) {
    const std::size_t digit = line.find_first_not_of(" \t-");
    return digit != line.npos && '0' <= line[digit] && line[digit] <= '9';
}

void write_out(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace

Settings& settings() {
    static Settings instance;
    return instance;
}

std::recursive_mutex& lock() {
    // Never destroyed: the fatal path ends the process while it holds the lock.
    static std::recursive_mutex& instance = *new std::recursive_mutex;
    return instance;
}

std::uint64_t write_count() {
    return prints.load(std::memory_order_acquire);
}

void secure_standard_streams() {
    for (int descriptor = 0; descriptor <= 2; descriptor++) {
        if (::fcntl(descriptor, F_GETFD) >= 0) continue;
        // The lowest free descriptor is this one, since those below are open by now.
        [[maybe_unused]] const int opened = ::open("/dev/null", descriptor == 0 ? O_RDONLY : O_WRONLY);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

bool output_is_terminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}

std::size_t status_width() {
    constexpr std::size_t MOST = 79;
    winsize window{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) != 0 || window.ws_col < 2) return MOST;
    return std::min<std::size_t>(MOST, window.ws_col - 1u);
}

void set_color(char letter) {
    if (letter == ' ' || !settings().colors_enabled) return;
    const Hold hold;
    write_out(color_sequence(letter));
    std::fflush(stdout);
}

void reset_color() {
    if (!settings().colors_enabled) return;
    const Hold hold;
    write_out(RESET_SEQUENCE);
    std::fflush(stdout);
}

void reset_color_in_signal_handler() noexcept {
    if (!settings().colors_enabled) return;
    [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, RESET_SEQUENCE, sizeof RESET_SEQUENCE - 1);
}

std::size_t print(std::string_view text, char letter) {
    const Hold hold;
    set_color(letter);
    write_out(text);
    std::fflush(stdout);
    prints.fetch_add(1, std::memory_order_release);
    return text.size();
}

std::size_t print_line(std::string_view text, char letter) {
    std::string line(text);
    line += '\n';
    return print(line, letter);
}

void new_line() {
    print("\n");
}

void print_label(std::string_view label, std::string_view value, char letter) {
    const Hold hold;
    if (letter != ' ') set_color('w');
    std::string head(label);
    head += ": ";
    print(head);
    print(value, letter);
    if (letter != ' ') set_color('w');
}

void print_label_line(std::string_view label, std::string_view value, char letter) {
    const Hold hold;
    print_label(label, value, letter);
    new_line();
}

void print_error(std::string_view text, bool keep_color) {
    const Hold hold;
    std::string lines = "\n";
    lines += text;
    print_line(lines, 'R');
    if (!keep_color) set_color('w');
}

std::optional<std::string> read_line(char letter) {
    const Hold hold;
    set_color(letter);
    std::string line;
    int c;
    while ((c = std::getc(stdin)) != EOF && c != '\n') line += static_cast<char>(c);
    if (letter != ' ') set_color('w');
    if (c == EOF && line.empty()) return std::nullopt;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

std::string read_answer(std::string_view prompt, char letter) {
    const Hold hold;
    print(prompt, 'w');
    std::optional<std::string> line = read_line(letter);
    if (!line) throw EndOfInput();
    return *std::move(line);
}

std::int64_t read_integer(std::string_view prompt, char letter) {
    return parse_signed_count(read_answer(prompt, letter));
}

std::int64_t prompt_integer(std::string_view prompt, std::int64_t min, std::int64_t max, char letter) {
    for (;;) {
        const std::string line = read_answer(prompt, letter);
        const std::int64_t value = parse_signed_count(line);
        if (starts_with_number(line) && min <= value && value <= max) return value;
    }
}

std::size_t choose(std::string_view title, const std::vector<std::string>& names) {
    {
        const Hold hold;
        new_line();
        print_line(title, 'T');
        new_line();
        for (std::size_t i = 0; i < names.size(); i++)
            print_line("  " + std::to_string(i) + "    " + names[i]);
        new_line();
    }
    return static_cast<std::size_t>(
        prompt_integer("option: ", 0, static_cast<std::int64_t>(names.size()) - 1));
}

void pause(char letter) {
    const Hold hold;
    print("Press ENTER to continue . . .", letter);
    read_line(' ');
}

}  // namespace lumo::Console
