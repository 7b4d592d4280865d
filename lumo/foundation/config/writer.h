/// Writers of the two syntaxes. What they write reads back as an equal value.
///
/// Lines end in carriage return and newline. Both throw InvalidParametersException for a key or string with
/// a NUL character, which no text of this language can hold.
#pragma once

#include "lumo/foundation/config/value.h"

namespace lumo::Config {

/// `.cfg` syntax, with comments: of one line behind the value, of several lines above the entry.
std::string write_cfg(const Value& value);
/// Strict syntax. Comments are left out.
std::string write_strict(const Value& value);

}  // namespace lumo::Config
