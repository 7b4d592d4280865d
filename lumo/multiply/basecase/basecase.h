/// Schoolbook products for short operands, called without scratch.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo::Basecase {

/// What direct_words() can be at most, in bits.
inline constexpr upL_t MOST_DIRECT_BITS = 20480;
/// Products up to this many words are made fastest by mulB(), under the active set of kernels.
template <typename wtype>
upL_t direct_words();
/// Whether a product of operands of AL >= BL words goes to vectors, which no cut of the operands makes
/// faster.
template <typename wtype>
bool by_vectors(upL_t AL, upL_t BL);

/// T[0 .. AL + BL) := A B, any lengths >= 1; T must not overlap the operands.
template <typename wtype>
void mulB(wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL);
/// T[0 .. 2L) := A B, operands of one length L >= 1.
template <typename wtype>
void elmB(wtype* T, const wtype* A, const wtype* B, upL_t L) {
    mulB(T, A, L, B, L);
}
/// T[0 .. 2L) := A^2, L >= 1.
template <typename wtype>
void sqrB(wtype* T, const wtype* A, upL_t L);

}  // namespace lumo::Basecase
