/// Sums and differences of two numbers over a range of absolute positions, whatever their overlap and gaps.
#pragma once

#include "lumo/numbers/words/words.h"

namespace lumo {

/// Words of one operand at absolute positions [exp, exp + L); zero elsewhere.
template <typename wtype>
struct PlacedWords {
    const wtype* T;
    upL_t L;
    spL_t exp;
    spL_t top() const { return exp + static_cast<spL_t>(L); }
};

/// T[0 .. count) := A + B on the positions low .. low + count - 1; returns the carry out. Words of the
/// operands outside the range are ignored. T must not overlap the operands.
template <typename wtype>
wtype range_add(wtype* T, spL_t low, upL_t count, const PlacedWords<wtype>& A, const PlacedWords<wtype>& B,
                const ParallelContext& ctx);
/// The same with A - B modulo 2^(W count); returns the borrow out.
template <typename wtype>
wtype range_sub(wtype* T, spL_t low, upL_t count, const PlacedWords<wtype>& A, const PlacedWords<wtype>& B,
                const ParallelContext& ctx);

/// T[0 .. AL) := A + B for AL >= BL; returns the carry out. T may be A or B.
template <typename wtype>
wtype add_shorter(wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL,
                  const ParallelContext& ctx = {});
/// The same with A - B; returns the borrow out.
template <typename wtype>
wtype sub_shorter(wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL,
                  const ParallelContext& ctx = {});

/// T := -A - borrow modulo 2^(W L); returns the borrow out: 0 only when A and the borrow are zero. T may be
/// A.
template <typename wtype>
wtype negate_words(wtype* T, const wtype* A, upL_t L, wtype borrow, const ParallelContext& ctx);

}  // namespace lumo
