/// Carries between blocks that were worked on by themselves.
///
/// A carry passes a whole block only if the block is all ones (+1) or all zeros (-1). So each block is
/// classified in parallel, one thread walks the classes, and a second parallel pass applies what arrives.
#pragma once

#include "lumo/numbers/words/blocks.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

inline constexpr std::uint8_t CLASS_ZEROS = 0;
inline constexpr std::uint8_t CLASS_MIXED = 128;
inline constexpr std::uint8_t CLASS_ONES = 255;

/// Record of one block: the class of its words, and the carry that is to enter it or that left it.
struct BlockCarry {
    static constexpr upL_t LEAST_WORDS = 8192;  ///< shorter arrays are not worth a second pass
    std::uint8_t kind;
    std::int8_t carry;
};

/// Adds to each block of T the carry of its record, and ripples. Returns the carry out of the last block
/// (0, +1 or -1). Afterwards each record holds the class of its block.
template <typename wtype>
int resolve_in_passes(BlockCarry* table, const BlockCut& cut, wtype* T, const ParallelContext& ctx);

/// The same for `count` blocks of `stride` words, of which those beyond L are empty; picks the way that is
/// faster for the length. Records are undefined afterwards.
template <typename wtype>
int resolve_block_carries(BlockCarry* table, upL_t count, upL_t stride, wtype* T, upL_t L,
                          const ParallelContext& ctx);

/// Words of a block that take the carry of the block below at once; what is left goes to the resolver.
inline constexpr upL_t CARRY_REACH = 2;

/// Adds the carry of record i, which survived the first CARRY_REACH words of block i + 1, to the words above.
template <typename wtype>
int resolve_survivors(BlockCarry* table, const BlockCut& cut, wtype* T, const ParallelContext& ctx);

/// Second half of a parallel sum: the carry out of each block (in `table`) goes into the next one, usually
/// no further than two words. Returns the carry out of the array.
template <typename wtype>
int join_blocks(BlockCarry* table, const BlockCut& cut, wtype* T, const ParallelContext& ctx);

}  // namespace lumo
