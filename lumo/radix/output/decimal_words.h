/// The words of base 10^19 that a conversion makes.
#pragma once

#include "lumo/numbers/words/hash61.h"
#include "lumo/numbers/words/words.h"

namespace lumo::DecimalWords {

inline constexpr std::uint64_t BASE = 10000000000000000000u;
inline constexpr upL_t DIGITS_PER_WORD = 19;

/// Canonical hash modulo 2^61 - 1 of words[0 .. count) as an integer, the last word most significant.
inline std::uint64_t hash(const std::uint64_t* words, upL_t count, const ParallelContext& ctx) {
    return Hash61::canonical(bp_hash_radix<std::uint64_t>(0, Hash61::canonical(BASE), words, count, ctx));
}

inline void add_one(std::uint64_t* words, upL_t count) {
    for (upL_t i = 0; i < count; i++) {
        if (words[i] != BASE - 1) {
            words[i]++;
            return;
        }
        words[i] = 0;
    }
}

inline void subtract_one(std::uint64_t* words, upL_t count) {
    for (upL_t i = 0; i < count; i++) {
        if (words[i] != 0) {
            words[i]--;
            return;
        }
        words[i] = BASE - 1;
    }
}

}  // namespace lumo::DecimalWords
