#include "digitviewer/viewer/word_counter.h"

#include <algorithm>

#include "lumo/numbers/words/hash61.h"

namespace DigitViewer2 {

namespace Hash61 = lumo::Hash61;

namespace {

constexpr std::uint64_t TEN_16 = 10000000000000000;

/// Adds what `occurrences` of a group of `length` digits bring.
void add_group(lumo::DigitCounts& counts, upL_t group, unsigned length, upL_t occurrences) {
    if (occurrences == 0) return;
    for (unsigned i = 0; i < length; i++) {
        counts.add_digit(group % counts.radix(), occurrences);
        group /= counts.radix();
    }
}

}  // namespace

void DigitStatistics::append(const DigitStatistics& next) {
    counts += next.counts;
    hash = Hash61::canonical(
        Hash61::add(Hash61::mul(hash, Hash61::pow(counts.radix(), next.digits)), next.hash));
    digits += next.digits;
}

WordCounter::WordCounter(const WordPacking& word_packing)
    : packing(word_packing),
      residue(Hash61::pow(packing.radix, packing.digits_per_word)),
      residue_4(Hash61::pow(residue, 4)) {}

void WordCounter::add(const std::uint64_t* words, upL_t count) {
    if (packing.radix == 10)
        count_decimal(words, count);
    else
        count_hexadecimal(words, count);
    hash_words(words, count);
    words_added += count;
}

void WordCounter::count_decimal(const std::uint64_t* words, upL_t count) {
    for (upL_t i = 0; i < count; i++) {
        const std::uint64_t rest = words[i] % TEN_16;
        const auto high = static_cast<std::uint32_t>(rest / 100000000);
        const auto low = static_cast<std::uint32_t>(rest % 100000000);
        tops[words[i] / TEN_16]++;
        groups[high / 10000]++;
        groups[high % 10000]++;
        groups[low / 10000]++;
        groups[low % 10000]++;
    }
}

void WordCounter::count_hexadecimal(const std::uint64_t* words, upL_t count) {
    // Four tables, so that equal neighbours do not wait for each other's sum.
    for (upL_t i = 0; i < count; i++) {
        for (unsigned byte = 0; byte < 8; byte++) groups[256 * (byte % 4) + (words[i] >> 8 * byte & 255)]++;
    }
}

void WordCounter::hash_words(const std::uint64_t* words, upL_t count) {
    // Four sums over every fourth word wait for each other's products no more than one does.
    std::uint64_t lanes[4] = {0, 0, 0, 0};
    upL_t i = 0;
    for (; i + 4 <= count; i += 4) {
        for (unsigned lane = 0; lane < 4; lane++)
            lanes[lane] = Hash61::add(Hash61::mul(lanes[lane], residue_4), words[i + lane]);
    }
    std::uint64_t sum = Hash61::mul(hash, Hash61::pow(residue, i));
    std::uint64_t joined = lanes[0];
    for (unsigned lane = 1; lane < 4; lane++) joined = Hash61::add(Hash61::mul(joined, residue), lanes[lane]);
    sum = Hash61::add(sum, joined);
    for (; i < count; i++) sum = Hash61::add(Hash61::mul(sum, residue), words[i]);
    hash = sum;
}

DigitStatistics WordCounter::statistics() const {
    DigitStatistics result(packing.radix);
    if (packing.radix == 10) {
        for (upL_t group = 0; group < groups.size(); group++)
            add_group(result.counts, group, 4, groups[group]);
        for (upL_t group = 0; group < tops.size(); group++) add_group(result.counts, group, 3, tops[group]);
    } else {
        for (upL_t i = 0; i < 4 * 256; i++) add_group(result.counts, i % 256, 2, groups[i]);
    }
    result.hash = Hash61::canonical(hash);
    result.digits = words_added * packing.digits_per_word;
    return result;
}

DigitStatistics count_few(const WordPacking& packing, const std::uint64_t* words, upL_t digits) {
    DigitStatistics result(packing.radix);
    char values[19];
    while (digits != 0) {
        const upL_t length = std::min(digits, packing.digits_per_word);
        unpack_part(packing, values, *words++, 0, length);
        result.counts.add(values, length);
        for (upL_t i = 0; i < length; i++)
            result.hash =
                Hash61::add(Hash61::mul(result.hash, packing.radix), static_cast<std::uint64_t>(values[i]));
        result.digits += length;
        digits -= length;
    }
    result.hash = Hash61::canonical(result.hash);
    return result;
}

}  // namespace DigitViewer2
