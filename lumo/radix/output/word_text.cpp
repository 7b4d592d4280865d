#include "lumo/radix/output/word_text.h"

#include <emmintrin.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/radix/cbrv2/fraction_view.h"

namespace lumo {

namespace {

constexpr std::uint64_t TEN_8 = 100000000;

/// The text of 0000 to 9999, the first digit in the lowest byte. Most of its 40 KB stay in the second cache,
/// and still five loads take half the time of splitting digits by multiplication.
constexpr auto FOUR_DIGITS = [] {
    std::array<std::uint32_t, 10000> table{};
    for (std::uint32_t i = 0; i < table.size(); i++)
        table[i] = 0x30303030 + (i / 1000 | i / 100 % 10 << 8 | i / 10 % 10 << 16 | i % 10 << 24);
    return table;
}();

void put_four(char* out, std::uint32_t x) {
    std::memcpy(out, &FOUR_DIGITS[x], 4);
}

void put_eight(char* out, std::uint32_t x) {
    put_four(out, x / 10000);
    put_four(out + 4, x % 10000);
}

void put_decimal(char* out, std::uint64_t word) {
    const std::uint64_t rest = word % (TEN_8 * TEN_8);
    const std::uint32_t top = FOUR_DIGITS[word / (TEN_8 * TEN_8)] >> 8;
    std::memcpy(out, &top, 4);  // the fourth byte is overwritten
    put_eight(out + 3, static_cast<std::uint32_t>(rest / TEN_8));
    put_eight(out + 11, static_cast<std::uint32_t>(rest % TEN_8));
}

/// Halves of bytes alternate, the higher one first; what is above 9 moves on to the letters.
void put_hexadecimal(char* out, std::uint64_t word) {
    const std::uint64_t bytes = __builtin_bswap64(word);
    constexpr std::uint64_t LOW_HALVES = 0x0f0f0f0f0f0f0f0f;
    const __m128i values =
        _mm_unpacklo_epi8(_mm_cvtsi64_si128(static_cast<long long>(bytes >> 4 & LOW_HALVES)),
                          _mm_cvtsi64_si128(static_cast<long long>(bytes & LOW_HALVES)));
    const __m128i to_letters =
        _mm_and_si128(_mm_cmpgt_epi8(values, _mm_set1_epi8(9)), _mm_set1_epi8('a' - '0' - 10));
    const __m128i text = _mm_add_epi8(_mm_add_epi8(values, _mm_set1_epi8('0')), to_letters);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), text);
}

std::uint64_t load_8(const char* values) {
    std::uint64_t x;
    std::memcpy(&x, values, sizeof(x));
    return x;
}

/// The number whose 8 decimal digits are the bytes of x, the first in the lowest. Pairs of digits gather in
/// every second byte; two products add four pairs up at once.
std::uint64_t join_decimal(std::uint64_t x) {
    const std::uint64_t pairs = 10 * x + (x >> 8);
    return ((pairs & 0x000000ff000000ff) * (100 + (1000000ull << 32)) +
            (pairs >> 16 & 0x000000ff000000ff) * (1 + (10000ull << 32))) >>
           32;
}

std::uint64_t join_hexadecimal(std::uint64_t x) {
    const std::uint64_t pairs = (x << 4 | x >> 8) & 0x00ff00ff00ff00ff;
    const std::uint64_t fours = (pairs << 8 | pairs >> 16) & 0x0000ffff0000ffff;
    return (fours << 16 | fours >> 32) & 0xffffffff;
}

/// The word of so many digit values, the last the least significant.
template <upL_t Radix>
std::uint64_t joined(const char* values, upL_t count) {
    std::uint64_t word = 0;
    upL_t i = 0;
    for (; i < count % 8; i++) word = word * Radix + static_cast<unsigned char>(values[i]);
    for (; i < count; i += 8) {
        const std::uint64_t digits = load_8(values + i);
        if constexpr (Radix == 10)
            word = word * TEN_8 + join_decimal(digits);
        else
            word = word << 32 | join_hexadecimal(digits);
    }
    return word;
}

}  // namespace

const DigitPacking& DigitPacking::of(upL_t radix) {
    static const DigitPacking decimal{10, 19, Hash61::pow(10, 19)};
    static const DigitPacking hexadecimal{16, 16, Hash61::pow(16, 16)};
    if (radix != 10 && radix != 16) throw InvalidParametersException("DigitPacking::of()", "Invalid radix.");
    return radix == 10 ? decimal : hexadecimal;
}

void words_to_text(const DigitPacking& packing, char* out, const std::uint64_t* words_end, upL_t words) {
    if (packing.radix == 10) {
        for (upL_t i = 0; i < words; i++) put_decimal(out + 19 * i, *--words_end);
    } else {
        for (upL_t i = 0; i < words; i++) put_hexadecimal(out + 16 * i, *--words_end);
    }
}

std::uint64_t values_to_word(upL_t radix, const char* values, upL_t count) {
    return radix == 10 ? joined<10>(values, count) : joined<16>(values, count);
}

void values_to_words(const DigitPacking& packing, std::uint64_t* words_end, const char* values, upL_t words) {
    if (packing.radix == 10) {
        for (upL_t i = 0; i < words; i++) *--words_end = joined<10>(values + 19 * i, 19);
    } else {
        for (upL_t i = 0; i < words; i++) *--words_end = joined<16>(values + 16 * i, 16);
    }
}

std::string integer_text(const BigFloat<std::uint64_t>& x, upL_t radix) {
    const BigFloat<std::uint64_t> part = words_between(x, 0, x.top());
    if (part.is_zero()) return "0";
    std::vector<std::uint64_t> words(static_cast<upL_t>(part.top()));
    std::copy_n(part.T, part.L, words.begin() + part.exp);
    std::string text;
    while (!words.empty()) {
        unsigned __int128 rest = 0;
        for (upL_t i = words.size(); i-- > 0;) {
            rest = rest << 64 | words[i];
            words[i] = static_cast<std::uint64_t>(rest / radix);
            rest %= radix;
        }
        text += "0123456789abcdef"[static_cast<unsigned>(rest)];
        if (words.back() == 0) words.pop_back();
    }
    std::reverse(text.begin(), text.end());
    return text;
}

std::uint64_t integer_hash(const BigFloat<std::uint64_t>& x) {
    const BigFloat<std::uint64_t> part = words_between(x, 0, x.top());
    return Hash61::mul(bp_hash<std::uint64_t>(0, part.T, part.L),
                       Hash61::word_power<std::uint64_t>(part.exp));
}

}  // namespace lumo
