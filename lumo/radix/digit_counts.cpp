#include "lumo/radix/digit_counts.h"

#include <emmintrin.h>

#include <algorithm>
#include <numeric>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

namespace {

/// The digits of 16 bytes; of other bytes something that no digit equals.
__m128i decimal_values(__m128i bytes) {
    const __m128i text = _mm_cmpgt_epi8(bytes, _mm_set1_epi8(15));
    return _mm_sub_epi8(bytes, _mm_and_si128(text, _mm_set1_epi8('0')));
}
__m128i hexadecimal_values(__m128i bytes) {
    const __m128i letters = _mm_sub_epi8(bytes, _mm_set1_epi8('a' - 10));
    const __m128i is_letter = _mm_cmpgt_epi8(letters, _mm_set1_epi8(9));
    const __m128i above_9 = _mm_cmpgt_epi8(bytes, _mm_set1_epi8('9'));
    const __m128i others = _mm_andnot_si128(above_9, decimal_values(bytes));
    const __m128i none = _mm_andnot_si128(is_letter, above_9);
    return _mm_or_si128(none,
                        _mm_or_si128(_mm_and_si128(_mm_and_si128(is_letter, above_9), letters), others));
}

/// Counts the digits from First to End - 1 in at most 255 vectors, by comparing with each of them.
template <int First, int End, typename Values>
void add_occurrences(std::array<upL_t, 16>& counts, const char* digits, upL_t vectors, Values values) {
    constexpr int DIGITS = End - First;
    __m128i sums[DIGITS];
    for (__m128i& sum : sums) sum = _mm_setzero_si128();
    for (upL_t i = 0; i < vectors; i++) {
        const __m128i x = values(_mm_loadu_si128(reinterpret_cast<const __m128i*>(digits) + i));
#pragma GCC unroll 16
        for (int d = 0; d < DIGITS; d++)
            sums[d] = _mm_sub_epi8(sums[d], _mm_cmpeq_epi8(x, _mm_set1_epi8(static_cast<char>(First + d))));
    }
    for (int d = 0; d < DIGITS; d++) {
        const __m128i halves = _mm_sad_epu8(sums[d], _mm_setzero_si128());
        counts[static_cast<upL_t>(First + d)] +=
            static_cast<upL_t>(_mm_cvtsi128_si64(halves) + _mm_cvtsi128_si64(_mm_srli_si128(halves, 8)));
    }
}

}  // namespace

DigitCounts::DigitCounts(upL_t radix) : base(radix) {
    if (radix != 10 && radix != 16)
        throw InvalidParametersException("DigitCounts::DigitCounts()", "Invalid radix.");
}

upL_t DigitCounts::total() const {
    return std::accumulate(counts.begin(), counts.end(), upL_t(0));
}

void DigitCounts::add(const char* digits, upL_t count) {
    // Sums of bytes hold this many comparisons.
    constexpr upL_t MOST_VECTORS = 255;
    const upL_t vectors = count / sizeof(__m128i);
    for (upL_t i = 0; i < vectors; i += MOST_VECTORS) {
        const char* block = digits + i * sizeof(__m128i);
        const upL_t length = std::min(vectors - i, MOST_VECTORS);
        if (base == 10) {
            add_occurrences<0, 10>(counts, block, length, decimal_values);
        } else {
            add_occurrences<0, 8>(counts, block, length, hexadecimal_values);
            add_occurrences<8, 16>(counts, block, length, hexadecimal_values);
        }
    }
    for (upL_t i = vectors * sizeof(__m128i); i < count; i++) {
        const auto byte = static_cast<unsigned char>(digits[i]);
        const upL_t digit = byte <= 15                   ? byte
                            : byte >= '0' && byte <= '9' ? byte - upL_t('0')
                            : byte >= 'a' && byte <= 'f' ? byte - upL_t('a') + 10
                                                         : base;
        if (digit < base) counts[digit]++;
    }
}

DigitCounts& DigitCounts::operator+=(const DigitCounts& other) {
    for (upL_t digit = 0; digit < base; digit++) counts[digit] += other.counts[digit];
    return *this;
}

std::string DigitCounts::to_string() const {
    std::string text;
    for (upL_t digit = 0; digit < base; digit++) {
        if (digit != 0) text += "  ";
        text += Console::format_commas(counts[digit]);
    }
    return text;
}

std::string DigitCounts::report_line() const {
    return (base == 10 ? "Dec Counts: " : "Hex Counts: ") + to_string();
}

}  // namespace lumo
