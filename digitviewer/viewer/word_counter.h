/// Counts and hash of digits that stand packed in words, without a look at single digits.
///
/// Decimal words are cut into groups of four digits and one of three, hexadecimal ones into bytes; the groups
/// are counted, and the digits come from the counts of groups at the end.
#pragma once

#include <array>

#include "digitviewer/files/lmd/packed_words.h"
#include "lumo/radix/digit_counts.h"

namespace DigitViewer2 {

/// Statistics of digits in their order.
struct DigitStatistics {
    explicit DigitStatistics(upL_t radix) : counts(radix) {}

    lumo::DigitCounts counts;
    std::uint64_t hash = 0;  ///< of the digits as an integer, modulo 2^61 - 1
    upL_t digits = 0;

    /// Takes the digits that follow.
    void append(const DigitStatistics& next);
};

/// One for a stretch of words; tables of 44 KB. Not for use by two threads at once.
class WordCounter {
 public:
    explicit WordCounter(const WordPacking& packing);
    /// Full words, none above the largest. 2^32 - 1 words may be added in all.
    void add(const std::uint64_t* words, upL_t count);
    DigitStatistics statistics() const;

 private:
    void count_decimal(const std::uint64_t* words, upL_t count);
    void count_hexadecimal(const std::uint64_t* words, upL_t count);
    void hash_words(const std::uint64_t* words, upL_t count);

    const WordPacking& packing;
    const std::uint64_t residue;                ///< of radix^digits_per_word
    const std::uint64_t residue_4;              ///< its fourth power
    std::array<std::uint32_t, 10000> groups{};  ///< of four decimal digits, or four tables of bytes
    std::array<std::uint32_t, 1000> tops{};     ///< of three decimal digits
    std::uint64_t hash = 0;
    upL_t words_added = 0;
};

/// Of a few words of which the last holds its digits in part.
DigitStatistics count_few(const WordPacking& packing, const std::uint64_t* words, upL_t digits);

}  // namespace DigitViewer2
