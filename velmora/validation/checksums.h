/// The salted hashes that close a validation file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// The line that ends the text that is hashed, which reaches from the first byte through these.
inline constexpr const char* SEPARATOR = "----";
inline constexpr const char* CHECKSUM0_LABEL = "Checksum0: ";
inline constexpr const char* CHECKSUM1_LABEL = "Checksum1: ";
/// The single checksum of version 1.2, made as the first one is.
inline constexpr const char* CHECKSUM_LABEL = "Checksum:   ";
inline constexpr std::size_t CHECKSUM_DIGITS = 128;

/// 32 bytes, H = SHA-256(salt A, body) with its first two 64-bit words XORed with the record, and
/// SHA-256(salt A, these 32 bytes, body): 128 hexadecimal digits. Words are read and printed most
/// significant byte first.
std::string checksum0(std::string_view body, const std::uint64_t record[2]);
/// SHA-512(salt B, body): 128 hexadecimal digits.
std::string checksum1(std::string_view body);

/// Whether the second half of a value of checksum0() belongs to its first half and the body. `value` has
/// CHECKSUM_DIGITS hexadecimal digits of either case.
bool confirms(std::string_view value, std::string_view body);

/// Bytes of pairs of hexadecimal digits; nothing if one is no digit or the last has no partner.
std::optional<std::string> bytes_of_hex(std::string_view digits);

}  // namespace velmora
