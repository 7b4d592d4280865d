#include <filesystem>
#include <fstream>

#include "lumo/foundation/console/console.h"
#include "velmora/validation/validator.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

/// Larger files are digits named by mistake.
constexpr std::uintmax_t MOST_BYTES = 16 << 20;

/// Nothing for what cannot be opened or is no file. A file that is too large is cut, and fails.
std::optional<std::string> read_file(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::string text(static_cast<std::size_t>(std::min(std::filesystem::file_size(path, error), MOST_BYTES)),
                     '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

void print_outcome(const ValidationOutcome& outcome) {
    std::lock_guard lock(Console::lock());
    for (const std::string& line : outcome.messages) Console::print_line(line, outcome.passed ? 'G' : 'R');
    Console::set_color('w');
    if (outcome.passed) Console::new_line();
    for (const std::string& line : outcome.key_figures) Console::print_line(line);
}

}  // namespace

void run_validator() {
    Console::print_line("Benchmark Validator", 'T');
    Console::new_line();
    Console::print_line("Enter Path of Validation File:", 'w');
    std::optional<std::string> path = Console::read_line();
    if (!path) throw Console::EndOfInput();
    if (!path->ends_with(".txt")) *path += ".txt";
    Console::new_line();
    const std::optional<std::string> text = read_file(*path);
    if (!text) {
        Console::print_line("Unable to open file.", 'R');
        Console::set_color('w');
        return;
    }
    print_outcome(validate_text(*text));
}

}  // namespace velmora
