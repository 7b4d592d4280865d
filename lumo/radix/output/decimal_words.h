/// The words of base 10^19 that a conversion made, as digits with guard words below them.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

/// A view. words[count - 1] holds the first digits after the point.
struct DecimalWords {
    static constexpr std::uint64_t BASE = 10000000000000000000u;
    static constexpr upL_t DIGITS_PER_WORD = 19;

    std::uint64_t* words;
    upL_t count;
    upL_t digits;  ///< those asked for; what follows them are guards

    /// Hash modulo 2^61 - 1 of the digits asked for, read as an integer with `seed` in front.
    std::uint64_t hash(std::uint64_t seed, const ParallelContext& ctx) const;
    /// Whether the guards, but the last word, are all nines (up) or all zeros (down): an error of the
    /// conversion may then have changed the digits asked for by one.
    bool may_round(bool up) const;
    /// Adds one to the digits asked for, or takes one, and sets the guards to the other side.
    void round(bool up);

 private:
    upL_t full_words() const { return digits / DIGITS_PER_WORD; }
    upL_t last_word() const { return count - (digits + DIGITS_PER_WORD - 1) / DIGITS_PER_WORD; }
    std::uint64_t unit() const;  ///< weight of the last digit asked for in its word
};

}  // namespace lumo
