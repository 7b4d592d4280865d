/// The arithmetic-geometric mean.
/// Precisions and sizes are words of `wtype` unless a name says bytes.
/// Source: Brent, "Fast multiple-precision evaluation of elementary functions" (1976).
#pragma once

#include "lumo/functions/inverse_sqrt.h"

namespace lumo {

/// AGM(a, b) of positive numbers. It works with two words more than the precision, and the relative error is
/// below 2^(4 - W precision).
template <typename wtype>
struct AGM2_BigFloatR : FunctionPlan {
    InvsqrtFloat_BigFloatR<wtype> root;
    upL_t number_words;  ///< of each working number
    AGM2_BigFloatR(upL_t p, upL_t tds);
    /// T := AGM(a, b) to `precision` <= p words, 0 if one of them is zero. T aliases neither; ctx.tds is at
    /// most the plan's, ctx.scratch holds byte_scratch. InvalidParametersException "One of the inputs is
    /// negative." unless the other is zero, or when tds or precision are above the plan's;
    /// AlgorithmFailedException when a step goes wrong. The status gets the title "AGM(a,b)", and a line for
    /// each round with its number and an estimate of how many there will be.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& a,
             const BigFloat<wtype>& b, upL_t precision, wtype* words, upL_t word_count) const;

    /// The iteration on numbers that stand in buffers of number_words already; M and spare are two more such
    /// buffers. All four are overwritten.
    void iterate(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, BigFloat<wtype> a,
                 BigFloat<wtype> b, BigFloat<wtype> M, BigFloat<wtype> spare, upL_t precision, wtype* words,
                 upL_t word_count) const;
};

/// AGM(1, x), whose first step is cheaper: the product is x itself.
template <typename wtype>
struct AGM1_BigFloatR : FunctionPlan {
    AGM2_BigFloatR<wtype> mean;
    AGM1_BigFloatR(upL_t p, upL_t tds);
    /// As AGM2_BigFloatR; "AGM of negative number.", and the title "AGM(1,x)".
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
             upL_t precision, wtype* words, upL_t word_count) const;
};

}  // namespace lumo
