/// Schoolbook products for very short operands, called without scratch.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo::Basecase {

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
