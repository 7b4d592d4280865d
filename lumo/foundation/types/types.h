/// Integer types that every floor uses.
#pragma once

#include <cstdint>
#include <type_traits>

namespace lumo {

using upL_t = std::uint64_t;  ///< lengths, counts, positions that cannot be negative
using spL_t = std::int64_t;   ///< exponents and signed positions, in words

/// Unsigned and signed views of one machine word, and its width.
template <typename wtype>
struct WordTraits {
    static_assert(std::is_same_v<wtype, std::uint32_t> || std::is_same_v<wtype, std::uint64_t>);
    using signed_word = std::make_signed_t<wtype>;
    static constexpr unsigned bits = 8 * sizeof(wtype);
    static constexpr unsigned bits_k = bits == 32 ? 5 : 6;  ///< log2(bits)
    static constexpr upL_t align_words = 128 / sizeof(wtype);
};

/// All scratch is handed out in multiples of this many bytes.
inline constexpr upL_t ALIGNMENT_BYTES = 128;

constexpr upL_t round_up(upL_t n, upL_t unit) {
    return (n + unit - 1) / unit * unit;
}
constexpr upL_t align_bytes(upL_t bytes) {
    return (bytes + 127) & ~upL_t(127);
}
/// Rounds a word count up to the alignment unit of its word type.
template <typename wtype>
constexpr upL_t align_words(upL_t words) {
    return (words + WordTraits<wtype>::align_words - 1) & ~(WordTraits<wtype>::align_words - 1);
}

}  // namespace lumo
