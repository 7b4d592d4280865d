/// Products by Karatsuba's method (Karatsuba and Ofman, 1962) over the schoolbook, in the caller's thread.
///
/// Lengths are words, all at least 1. T must not overlap the operands nor the scratch. `scratch` holds at
/// least the words that sqr_scratch() or mul_scratch() tell; nothing checks the operands.
#pragma once

#include "lumo/multiply/basecase/basecase.h"

namespace lumo::Basecase {

/// Length in words from which Karatsuba is used: 22 and 23 digits of 64 bits. The schoolbook reads 32-bit
/// words in pairs, so for them the turning points lie at the same number of bits.
template <typename wtype>
struct KaratsubaThresholds {
    static constexpr upL_t sqr = 22 * (8 / sizeof(wtype));
    static constexpr upL_t mul = 23 * (8 / sizeof(wtype));
};

template <typename wtype>
upL_t sqr_scratch(upL_t L);
template <typename wtype>
upL_t mul_scratch(upL_t AL, upL_t BL);

/// T[0 .. 2L) := A^2.
template <typename wtype>
void sqrK(wtype* T, const wtype* A, upL_t L, wtype* scratch);
/// T[0 .. 2L) := A B, operands of one length.
template <typename wtype>
void elmK(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype* scratch);
/// T[0 .. AL + BL) := A B, any lengths in any order.
template <typename wtype>
void mulK(wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL, wtype* scratch);

}  // namespace lumo::Basecase
