/// How a long array is cut for parallel work, and how pairs of 32-bit words are read as one of 64 bits.
#pragma once

#include <algorithm>
#include <cstring>

#include "lumo/numbers/words/words.h"

namespace lumo {

/// Equal blocks of `chunk` words, a multiple of the alignment unit; the last one takes what is left.
struct BlockCut {
    upL_t length;
    upL_t chunk;
    upL_t count;
    upL_t start(upL_t block) const { return block * chunk; }
    upL_t size(upL_t block) const { return std::min(chunk, length - start(block)); }
};

/// At most `pieces` blocks of at least `least` elements, in multiples of `unit`.
constexpr BlockCut cut_blocks(upL_t length, upL_t pieces, upL_t least, upL_t unit) {
    const upL_t share = length / pieces + (length % pieces != 0);
    const upL_t chunk = round_up(std::max(share, least), unit);
    return {length, chunk, length / chunk + (length % chunk != 0)};
}

/// True when what is left after the prefix is too short to be cut.
inline bool runs_serially(upL_t length, upL_t prefix, upL_t least, const ParallelContext& ctx) {
    return ctx.tds < 2 || length < prefix + least;
}

/// Little-endian words, so two neighbours of 32 bits are one of 64. Any alignment.
inline std::uint64_t load_u64(const void* words) {
    std::uint64_t value;
    std::memcpy(&value, words, sizeof(value));
    return value;
}
inline void store_u64(void* words, std::uint64_t value) {
    std::memcpy(words, &value, sizeof(value));
}

}  // namespace lumo
