/// x^(-1/n) by Newton iteration.
/// Precisions and sizes are words of `wtype` unless a name says bytes.
/// Source: Brent, "Fast multiple-precision evaluation of elementary functions" (1976).
#pragma once

#include "lumo/functions/power.h"

namespace lumo {

/// Plain form for tiny precisions (p <= 10).
template <typename wtype>
struct InvNthRootFloat_BigFloatR_E : FunctionPlan {
    Power_BF_uL_BigFloatR<wtype> power;
    InvNthRootFloat_BigFloatR_E(upL_t p, upL_t tds);
    void run(const MultiplyContext& ctx, BigFloat<wtype>& T, const BigFloat<wtype>& x, std::uint32_t n,
             upL_t precision, wtype* words, upL_t word_count) const;
};

/// One step at p words from an approximation R of (p >> 1) + 3 words. B is storage for half a number; T's
/// capacity is p + 4.
template <typename wtype>
struct InvNthRootFloat_BigFloatR_P {
    Power_BF_uL_BigFloatR<wtype> power;
    upL_t byte_scratch;
    InvNthRootFloat_BigFloatR_P(upL_t p, upL_t tds);
    /// For odd n: R - (x R^(n+1) - R) / n.
    void run_expanded(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                      const BigFloat<wtype>& x, std::uint32_t n, upL_t p, const BigFloat<wtype>& R,
                      BigFloat<wtype> B) const;
    /// For even n: R + R (1 - x R^n) / n.
    void run_factored(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                      const BigFloat<wtype>& x, std::uint32_t n, upL_t p, const BigFloat<wtype>& R,
                      BigFloat<wtype> B) const;
};

template <typename wtype>
struct InvNthRootFloat_BigFloatR : FunctionPlan {
    InvNthRootFloat_BigFloatR_E<wtype> end;
    InvNthRootFloat_BigFloatR_P<wtype> step;
    InvNthRootFloat_BigFloatR(upL_t p, upL_t tds);
    /// T := x^(-1/n) to `precision` <= p words, relative error below 2^(2 - W precision). T must not alias x.
    /// ArithmeticException "Divide by zero." for x = 0 or n = 0, "Nth root of negative number." for x < 0.
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
             std::uint32_t n, upL_t precision, wtype* words, upL_t word_count) const;

 private:
    void iterate(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
                 std::uint32_t n, upL_t precision, wtype* words, upL_t word_count) const;
};

}  // namespace lumo
