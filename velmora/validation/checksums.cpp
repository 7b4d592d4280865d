#include "velmora/validation/checksums.h"

#include "lumo/foundation/digest/sha2.h"

namespace velmora {

namespace {

/// Files are valid for builds with the same salts.
constexpr std::string_view SALT_A("\x4c\x1d\x7e\x92\xa5\x30\x6b\xf8", 8);
constexpr std::string_view SALT_B("\x9b\x36\xe0\xf1\x74\xad\x52\xc3", 8);

template <typename Hash>
typename Hash::Digest hash_of(std::initializer_list<std::string_view> pieces) {
    Hash hash;
    for (const std::string_view piece : pieces) hash.update(piece);
    return hash.final();
}

std::string second_half(std::string_view first_half, std::string_view body) {
    return lumo::to_hex(hash_of<lumo::Sha256>({SALT_A, first_half, body}));
}

int digit_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

std::string checksum0(std::string_view body, const std::uint64_t record[2]) {
    lumo::Sha256::Digest first = hash_of<lumo::Sha256>({SALT_A, body});
    for (unsigned i = 0; i < 16; i++)
        first[i] ^= static_cast<std::uint8_t>(record[i / 8] >> (56 - 8 * (i % 8)));
    const std::string_view bytes(reinterpret_cast<const char*>(first.data()), first.size());
    return lumo::to_hex(first) + second_half(bytes, body);
}

std::string checksum1(std::string_view body) {
    return lumo::to_hex(hash_of<lumo::Sha512>({SALT_B, body}));
}

bool confirms(std::string_view value, std::string_view body) {
    constexpr std::size_t HALF = CHECKSUM_DIGITS / 2;
    const auto first = bytes_of_hex(value.substr(0, HALF));
    const auto second = bytes_of_hex(value.substr(HALF));
    return first && second && second == bytes_of_hex(second_half(*first, body));
}

std::optional<std::string> bytes_of_hex(std::string_view digits) {
    if (digits.size() % 2 != 0) return std::nullopt;
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const int high = digit_value(digits[i]), low = digit_value(digits[i + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes += static_cast<char>(16 * high + low);
    }
    return bytes;
}

}  // namespace velmora
