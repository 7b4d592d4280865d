#include "velmora/validation/spot_check.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <sstream>

#include "digitviewer/files/digit_text.h"
#include "lumo/foundation/config/text_file.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/hardware/program_path.h"

namespace velmora {

using lumo::upL_t;
namespace Console = lumo::Console;

namespace {

[[noreturn]] void refuse(const std::string& what) {
    throw lumo::ParseException("", "Error parsing digit file: " + what);
}

}  // namespace

SpotChecks::SpotChecks(std::string_view file_text) : is_loaded(true) {
    std::istringstream lines{std::string(file_text)};
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line.substr(0, line.find('#')));
        std::string position, digits, more;
        if (!(fields >> position)) continue;
        upL_t last = 0;
        const auto [end, error] = std::from_chars(position.data(), position.data() + position.size(), last);
        const bool number = error == std::errc() && end == position.data() + position.size();
        if (!number || !(fields >> digits) || fields >> more || digits.size() > last ||
            digits.find_first_not_of("0123456789") != std::string::npos)
            refuse("Invalid entry: " + line.substr(0, 60));
        if (!windows.emplace(last, digits).second) refuse("Duplicate entries.");
    }
}

SpotChecks SpotChecks::load(const std::string& name, const std::vector<std::string>& folders) {
    for (const std::string& folder : folders) {
        const std::string path = folder + name + ".txt";
        if (::access(path.c_str(), F_OK) == 0) return SpotChecks(lumo::Config::read_text_file(path));
    }
    return {};
}

std::vector<std::string> SpotChecks::folders() {
    std::vector<std::string> places = {"Digits/", "../../Digits/", "../../../Digits/", "Binaries/Digits/"};
    for (std::string& place : places) place.insert(0, lumo::folder_of(lumo::read_program_path()));
    return places;
}

std::string SpotChecks::check(DigitViewer2::BasicDigitReader& digits) const {
    if (!is_loaded) return "Unavailable - Digit file not found.";
    const auto behind = windows.upper_bound(digits.digits());
    if (behind == windows.begin() || digits.radix() != 10)
        return "Unavailable - No suitable spot check entry.";
    const auto& [last, expected] = *std::prev(behind);
    const upL_t first = last - expected.size();
    std::string computed(expected.size(), '\0');
    digits.read({}, computed.data(), static_cast<lumo::spL_t>(first), computed.size());
    DigitViewer2::text_of_values(10, computed.data(), computed.data(), computed.size());
    const auto difference = std::mismatch(expected.begin(), expected.end(), computed.begin()).first;
    if (difference == expected.end()) return "Good through " + Console::format_commas(last);
    const std::string place =
        Console::format_commas(first + static_cast<upL_t>(difference - expected.begin()) + 1);
    Console::print("Spot Check:                 ", 'w');
    Console::print_line("Mismatch at " + place, 'R');
    throw lumo::AlgorithmFailedException("SpotChecks::check()", "Spot check failed at: " + place);
}

}  // namespace velmora
