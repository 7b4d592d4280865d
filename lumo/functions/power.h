/// Integer powers by left-to-right binary exponentiation.
/// Precisions and sizes are words of `wtype` unless a name says bytes.
///
/// The relative error is below 4 n 2^(-W (p + g)), g being 1 for n below 2^32 and 2 above.
/// LimitExceededException "Precision" or "Task Decomposition" above the plan's.
#pragma once

#include "lumo/functions/reciprocal.h"

namespace lumo {

/// T := w^n for a word w; 0^0 is 1. `status` may be null.
template <typename wtype>
struct Power_uW_uL_BigFloatR : FunctionPlan {
    Power_uW_uL_BigFloatR(upL_t p, upL_t tds);
    void run(const MultiplyContext& ctx, StatusNode* status, BigFloat<wtype>& T, wtype w, upL_t n,
             upL_t precision, wtype* words, upL_t word_count) const;
};

/// T := x^n; x^0 is 1. T must not alias x. `status` may be null. The word scratch is for short powers; long
/// ones are made in place.
template <typename wtype>
struct Power_BF_uL_BigFloatR : FunctionPlan {
    Power_BF_uL_BigFloatR(upL_t p, upL_t tds);
    void run(const MultiplyContext& ctx, StatusNode* status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
             upL_t n, upL_t precision, wtype* words, upL_t word_count) const;
};

/// T := w^n for an n of either sign, a negative one through the reciprocal of w^|n|.
template <typename wtype>
struct Power_uW_sL_BigFloatR : FunctionPlan {
    Power_uW_uL_BigFloatR<wtype> power;
    Reciprocal_BigFloatR<wtype> reciprocal;
    Power_uW_sL_BigFloatR(upL_t p, upL_t tds);
    /// ArithmeticException "Divide by zero." for w = 0 and n < 0.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, wtype w, spL_t n,
             upL_t precision, wtype* words, upL_t word_count) const;
};

}  // namespace lumo
