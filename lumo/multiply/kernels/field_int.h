/// Residues modulo p < 2^48 as 64-bit integers, one at a time, lazily reduced: values stay below 2^52, so
/// that every bound of the 52-bit field holds here too.
#pragma once

#include <immintrin.h>

#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {

struct Field {
    using V = uint64_t;
    using Same = V;  ///< the same value in all lanes
    static constexpr int LANES = 1;
    static constexpr int RADIX_BITS = 2;
    static constexpr bool SIGNED = false;
    static constexpr bool REDUCES_ALL = true;

    V p, one_q, p_inverse, unit;
    double p_scaled;  ///< 2^64 / p and a little less

    explicit Field(const Vt3Prime& prime)
        : p(prime.p),
          one_q(prime.one.q),
          p_inverse(prime.p_inverse),
          unit(prime.unit),
          p_scaled(18446744073709551616.0 / double(int64_t(prime.p)) * (1 - 0x1p-51)) {}

    static V high(V a, V b) { return V((static_cast<unsigned __int128>(a) * b) >> 64); }

    static V all(uint64_t x) { return x; }
    static V load(const uint64_t* x) { return *x; }
    static void store(uint64_t* x, V a) { *x = a; }
    static void take_pieces(uint64_t*, size_t) {}
    static V add(V a, V b) { return a + b; }
    static V sub(V a, V b) { return a - b; }
    V sub_lifted(V a, V b) const { return a + 8 * p - b; }
    V mul(V a, Vt3Factor c) const { return a * c.w - high(a, c.q) * p; }
    V mul_signed(V a, Vt3Factor c) const { return mul(a, c) - p; }
    /// Pieces below 2^48, `step` words apart, with the powers of 2^48: up to 2^48 and 2 p for each power.
    template <int COUNT>
    V joined(const uint64_t* pieces, size_t step, const Vt3Factor* powers) const {
        V value = *pieces;
        for (int i = 1; i < COUNT; i++) value += mul(pieces[size_t(i) * step], powers[i - 1]);
        return value;
    }
    V norm(V a) const { return a - high(a, one_q) * p; }
    V norm_middle(V a) const { return norm(a) + 7 * p; }
    V norm_low(V a) const { return norm(a) + 4 * p; }
    V lift(V a) const { return a + 3 * p; }
    V mul_var(V a, V b) const {
        unsigned __int128 t = static_cast<unsigned __int128>(a) * b;
        return V(t >> 64) - high(V(t) * p_inverse, p) + p;
    }
    V mul_outputs(V a, V b) const { return mul_var(a, b) + 3 * p; }

    /// A variable factor with its quotient, as Vt3Factor.
    struct Step {
        V w, q;
    };
    Step step_of(V power) const {
        const V w = mul_var(power, 1);  // in [1, p): it is no multiple of p
        return {w, V((static_cast<unsigned __int128>(w) << 64) / p)};
    }
    /// Of a power below 2 p, in plain form. Taken from below, the floating quotient is up to 2^12 too small.
    Step loose_step_of(V power) const {
        const V w = power < p ? power : power - p;
        return {w, V(double(int64_t(w)) * p_scaled)};
    }
    /// a times a loose factor, in [3 p, 9 p).
    V mul_step_lifted(V a, const Step& step) const { return mul_step(a, step) + 3 * p; }
    V mul_signed(V a, const Step& step) const { return mul_step(a, step) - p; }
    V mul_step(V a, const Step& step) const { return a * step.w - high(a, step.q) * p; }
    /// The residue itself, in [0, p).
    void store_canonical(uint64_t* to, V a) const {
        V r = norm(a);
        *to = r >= p ? r - p : r;
    }
};

using NarrowField = Field;

}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE
