/// Values of options. None reports an error of syntax: each stops at the first character that it does not
/// understand and uses what it has. Decimal counts with their suffixes are the console's
/// parse_decimal_count().
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

/// Digits only, no suffix. Values beyond 64 bits give the largest one.
std::uint64_t parse_plain_count(std::string_view text);

/// Digits, perhaps a fraction, blanks, and one of K M G T P E in either case for 2^10 to 2^60; the part of a
/// byte is rounded up. Without a suffix a fraction is dropped. Values beyond 64 bits give the largest one.
std::uint64_t parse_byte_size(std::string_view text);

/// What `-od`, `-verify` and their like mean: a decimal count behind an optional '-', on if not zero.
bool parse_switch(std::string_view text);

}  // namespace velmora
