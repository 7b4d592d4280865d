/// Counts as users write them: digits and one letter of scale.
#pragma once

#include <cstdint>
#include <string_view>

namespace lumo::Console {

/// A run of decimal digits (an empty run is 0) and at most one suffix directly behind it, in either case:
/// K = 10^3, M = 10^6, B = 10^9, T = 10^12. Whatever follows is left unread. Values beyond 64 bits give the
/// largest one, so that the caller's range check refuses them.
std::uint64_t parse_decimal_count(std::string_view text);

/// The same behind leading blanks and an optional '-', with the result held within 64 signed bits.
std::int64_t parse_signed_count(std::string_view text);

}  // namespace lumo::Console
