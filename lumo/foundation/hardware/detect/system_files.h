/// Reading the kernel's text files.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Roots of the kernel's file systems; other folders stand in for them in tests.
struct SystemPaths {
    std::string proc = "/proc";
    std::string sys = "/sys";
};

std::optional<std::string> read_system_file(const std::string& path);
/// The file's text without blanks at its ends; empty when it cannot be read.
std::string read_system_line(const std::string& path);

std::string_view trim(std::string_view text);
/// Lines without their ends.
std::vector<std::string_view> split_lines(std::string_view text);
/// The decimal number at the start of the text, if there is one and it fits.
std::optional<upL_t> parse_leading_number(std::string_view text);
/// "0-3,8" -> 0 1 2 3 8. Nothing for any other form; an empty text is an empty list.
std::optional<std::vector<upL_t>> parse_number_list(std::string_view text);

}  // namespace lumo
