/// Quotient of big floats; the last Newton step is folded into the quotient.
/// Source: Karp and Markstein, "High-precision division and square root" (1997).
#pragma once

#include "lumo/functions/reciprocal.h"

namespace lumo {

template <typename wtype>
struct Division_BigFloatR : FunctionPlan {
    upL_t p_r;  ///< precision of the reciprocal
    Reciprocal_BigFloatR<wtype> reciprocal;
    upL_t R_words, Q_words, S_words;
    upL_t array_bytes, part_bytes, transform_scratch_bytes;
    Division_BigFloatR(upL_t p, upL_t tds);
    /// out := N / D to p words, relative error below 2^(2 - W p); ctx.tds equals the plan's, ctx.scratch
    /// holds byte_scratch. out may stand in N's storage, and aliases nothing else. ArithmeticException
    /// "Divide by zero." unless N is zero too; InvalidParametersException "Mismatching tds.";
    /// AlgorithmFailedException when a step goes wrong.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& out, const BigFloat<wtype>& N,
             const BigFloat<wtype>& D, wtype* words, upL_t word_count) const;

 private:
    void quotient(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& out,
                  const BigFloat<wtype>& N, const BigFloat<wtype>& D, BigFloat<wtype>& R, wtype* words) const;
};

}  // namespace lumo
