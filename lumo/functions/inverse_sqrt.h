/// Inverse square roots by Newton iteration: of a big float, and of one word.
/// Precisions and sizes are words of `wtype` unless a name says bytes.
/// Source: Karp and Markstein, "High-precision division and square root" (1997).
#pragma once

#include "lumo/functions/inverse_sqrt_end.h"

namespace lumo {

template <typename wtype>
struct InvsqrtFloat_BigFloatR : FunctionPlan {
    InvsqrtFloat_BigFloatR_E<wtype> end;
    InvsqrtFloat_BigFloatR(upL_t p, upL_t tds);
    /// T := 1 / sqrt(x) to `precision` <= p words, relative error below 2^(2 - W precision). T must not alias
    /// x. ArithmeticException "Divide by zero." or "Square root of negative number.";
    /// AlgorithmFailedException when a step goes wrong; InvalidParametersException when tds or precision are
    /// above the plan's.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
             upL_t precision, wtype* words, upL_t word_count) const;
};

/// One word x: no large product with x is needed.
template <typename wtype>
struct InvsqrtWord_BigFloatR : FunctionPlan {
    InvsqrtWord_BigFloatR_E<wtype> end;
    InvsqrtWord_BigFloatR(upL_t p, upL_t tds);
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, wtype x, upL_t precision,
             wtype* words, upL_t word_count) const;
};

}  // namespace lumo
