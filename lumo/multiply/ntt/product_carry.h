/// Carries between the pieces in which a product was put together.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Segments of a product, in its order: piece t of row r follows piece t - 1, and the last of a row is
/// followed by the first of the next; the last of all by the very first. Each has its words in place, as far
/// as they lie in the window, and a carry of WORDS words into the next one, not yet added there.
template <std::size_t WORDS>
struct CarrySegments {
    std::size_t rows, pieces;
    std::uint64_t (*const* carry)[WORDS];  ///< [piece][row]
    std::uint64_t (*const* head)[WORDS];   ///< lowest words as they stand
    const unsigned char* const* ones;      ///< all words above the head are ~0
    const std::uint64_t* start;  ///< first byte of each piece within a row; start[pieces]: its length
    bool below_ones;             ///< the words from the head to the window's begin, where it begins, are ~0
};

/// Adds all carries. `bytes` is byte `begin` of the product; [begin, end) are there. For 4 and 5 words.
template <std::size_t WORDS>
void add_carries(const CarrySegments<WORDS>& segments, unsigned char* bytes, std::uint64_t begin,
                 std::uint64_t end);

}  // namespace lumo
