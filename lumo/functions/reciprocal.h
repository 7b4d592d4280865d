/// Reciprocal of a big float by Newton iteration with held images and wrapped windows.
/// Precisions and sizes are words of `wtype` unless a name says bytes.
/// Source: Karp and Markstein, "High-precision division and square root" (1997).
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/functions/function_plan.h"
#include "lumo/numbers/objects/big_float.h"

namespace lumo {

/// Plain form for tiny precisions (p <= 10).
template <typename wtype>
struct Reciprocal_BigFloatR_E : FunctionPlan {
    Reciprocal_BigFloatR_E(upL_t p, upL_t tds);
    /// T := 1 / x to `precision` <= p words, relative error below 2^(2 - W precision); ctx.scratch is the
    /// byte scratch. T must not alias x. ArithmeticException "Divide by zero."; AlgorithmFailedException when
    /// the error exceeds what the step allows.
    void run(const MultiplyContext& ctx, BigFloat<wtype>& T, const BigFloat<wtype>& x, upL_t precision,
             wtype* words, upL_t word_count) const;
};

template <typename wtype>
struct Reciprocal_BigFloatR : FunctionPlan {
    Reciprocal_BigFloatR_E<wtype> end;
    Reciprocal_BigFloatR(upL_t p, upL_t tds);
    /// As the plain form. ctx.tds may be below the plan's; more, or a larger precision than the plan's, is
    /// InvalidParametersException.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
             upL_t precision, wtype* words, upL_t word_count) const;
    /// The same with the words cut from the front of ctx.scratch: word_scratch words rounded up to 128 bytes,
    /// then byte_scratch.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
             upL_t precision) const;
};

}  // namespace lumo
