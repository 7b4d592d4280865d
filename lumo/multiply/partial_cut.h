/// Which words of the operands a partial product needs.
#pragma once

#include <algorithm>
#include <utility>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// A window [s, L) of the product of A (AL words) and B (BL words), with s < L <= AL + BL.
///
/// The constructor drops low words of the operands whose products end below word s: each of the two drops
/// leaves out less than one unit of word s, so the window falls short by at most two such units (and the
/// carries that they bring). Then it drops high words that only touch words from L up, which changes nothing
/// in the window.
template <typename wtype>
struct MulCut {
    upL_t s, L;
    const wtype* A;
    upL_t AL;
    const wtype* B;
    upL_t BL;

    MulCut(upL_t s_, upL_t L_, const wtype* A_, upL_t AL_, const wtype* B_, upL_t BL_)
        : s(s_), L(L_), A(A_), AL(AL_), B(B_), BL(BL_) {
        if (AL < BL) {
            std::swap(A, B);
            std::swap(AL, BL);
        }
        if (BL < s) {
            const upL_t drop_b = AL < s ? s - AL : 0;
            const upL_t drop_a = s - BL;
            A += drop_a, B += drop_b;
            AL -= drop_a, BL -= drop_b;
            s -= drop_a + drop_b, L -= drop_a + drop_b;
        }
        AL = std::min(AL, L);
        BL = std::min(BL, L);
    }
    /// Length of the product that is left to compute: it chooses the algorithm.
    upL_t key() const { return AL + BL; }
};

/// The same for a square: s < L <= 2 AL.
template <typename wtype>
struct SqrCut {
    upL_t s, L;
    const wtype* A;
    upL_t AL;

    SqrCut(upL_t s_, upL_t L_, const wtype* A_, upL_t AL_) : s(s_), L(L_), A(A_), AL(AL_) {
        if (AL < s) {
            const upL_t drop = s - AL;
            A += drop, AL -= drop;
            s -= 2 * drop, L -= 2 * drop;
        }
        AL = std::min(AL, L);
    }
    upL_t key() const { return 2 * AL; }
};

}  // namespace lumo
