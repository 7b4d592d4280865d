#include "lumo/foundation/hardware/detect/system_files.h"

#include <charconv>
#include <fstream>
#include <iterator>

namespace lumo {

std::optional<std::string> read_system_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad()) return std::nullopt;
    return text;
}

std::string read_system_line(const std::string& path) {
    return std::string(trim(read_system_file(path).value_or("")));
}

std::string_view trim(std::string_view text) {
    constexpr std::string_view BLANKS = " \t\r\n";
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

std::vector<std::string_view> split_lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        if (end == text.npos) break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

std::optional<upL_t> parse_leading_number(std::string_view text) {
    upL_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return std::nullopt;
    return number;
}

std::optional<std::vector<upL_t>> parse_number_list(std::string_view text) {
    constexpr upL_t LONGEST_RUN = upL_t(1) << 20;  // no machine has more cores
    std::vector<upL_t> list;
    text = trim(text);
    while (!text.empty()) {
        upL_t first = 0;
        const char* end = text.data() + text.size();
        auto parsed = std::from_chars(text.data(), end, first);
        if (parsed.ec != std::errc()) return std::nullopt;
        upL_t last = first;
        if (parsed.ptr != end && *parsed.ptr == '-') {
            parsed = std::from_chars(parsed.ptr + 1, end, last);
            if (parsed.ec != std::errc() || last < first || last - first > LONGEST_RUN) return std::nullopt;
        }
        for (upL_t n = first; n <= last; n++) list.push_back(n);
        if (parsed.ptr == end) break;
        if (*parsed.ptr != ',' || parsed.ptr + 1 == end) return std::nullopt;
        text = text.substr(parsed.ptr + 1 - text.data());
    }
    return list;
}

}  // namespace lumo
