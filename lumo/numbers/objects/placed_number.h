/// How a float takes words over, and which it may do without.
#pragma once

#include "lumo/numbers/words/words.h"

namespace lumo {

/// How many low words are zero.
template <typename wtype>
upL_t low_zero_words(const wtype* T, upL_t L) {
    upL_t n = 0;
    while (n < L && T[n] == 0) n++;
    return n;
}

/// T := words at the start of its buffer, from which they may come. BufferTooSmallException at `location`.
template <typename Number, typename wtype>
void place_words(const char* location, Number& T, const wtype* words, upL_t length, spL_t exponent,
                 bool positive, const ParallelContext& ctx) {
    require_capacity(location, T.capacity, length);
    if (T.base < words + length && words < T.base + length)
        bp_move(T.base, words, length);
    else
        bp_copy(T.base, words, length, ctx);
    T.T = T.base;
    T.L = length;
    T.exp = length == 0 ? 0 : exponent;
    T.positive = length == 0 || positive;
}

}  // namespace lumo
