/// The natural logarithm by the arithmetic-geometric mean.
/// Precisions and sizes are words of `wtype` unless a name says bytes.
/// Source: Brent, "Multiple-precision zero-finding methods and the complexity of elementary function
/// evaluation" (1975).
#pragma once

#include "lumo/functions/agm.h"
#include "lumo/functions/division.h"

namespace lumo {

/// ln x = Pi Y / (2 AGM(1, Y)) - m ln 2 with Y = x 2^m / 4 beyond the root of the precision.
template <typename wtype>
struct Log_AGM_BigFloatR : FunctionPlan {
    AGM1_BigFloatR<wtype> mean;
    Division_BigFloatR<wtype> division;
    upL_t number_words;      ///< of each working number
    upL_t quotient_scratch;  ///< words that quotient() needs
    Log_AGM_BigFloatR(upL_t p, upL_t tds);
    /// T := ln x with p words behind the point, less those that W |m| takes: the error is absolute, so that
    /// logarithms near zero have fewer true words. `pi` and `ln2` are given to p + 2 words at least. T
    /// aliases nothing; ctx.tds equals the plan's, ctx.scratch holds byte_scratch. ArithmeticException
    /// "Log(0)"; InvalidParametersException "Log of a negative number is complex."; LimitExceededException
    /// when the exponent of x, in bits, leaves 64 bits.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
             const BigFloat<wtype>& pi, const BigFloat<wtype>& ln2, wtype* words, upL_t word_count) const;

    // The steps of run(), for a caller that makes Pi and ln 2 in between. Q, A and U are working numbers, and
    // alias nothing.

    /// Q := Y / AGM(1, Y); returns m. Refuses what run() refuses, at `location`.
    spL_t quotient(const char* location, const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& Q,
                   const BigFloat<wtype>& x, wtype* words, upL_t word_count) const;
    /// A := Q Pi / 2.
    void times_half_pi(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& A,
                       const BigFloat<wtype>& Q, const BigFloat<wtype>& pi) const;
    /// T := A - m ln 2, with U for the product; T may stand where ln 2 stands.
    void finish(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& A,
                spL_t m, const BigFloat<wtype>& ln2, BigFloat<wtype>& U) const;
};

}  // namespace lumo
