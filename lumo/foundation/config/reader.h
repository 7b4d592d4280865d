/// Readers of the two syntaxes of the configuration language.
///
/// All throw ParseException "Line <n>: <message>" for an error of syntax and EndOfStreamException when the
/// text ends too early. Values may nest MAX_DEPTH deep.
#pragma once

#include "lumo/foundation/config/value.h"

namespace lumo::Config {

inline constexpr unsigned MAX_DEPTH = 1000;

/// The syntax of `.cfg` files: entries and elements without separators, keys with or without quotes,
/// comments from `//` to the end of the line. Exactly one value.
ValuePtr parse_text(std::string_view text);
/// The same from a file; see read_text_file() for what can be read.
ValuePtr parse_file(const std::string& path);

/// The strict syntax: quoted keys, and commas between entries and elements.
ValuePtr parse_strict_text(std::string_view text);
ValuePtr parse_strict_file(const std::string& path);

}  // namespace lumo::Config
