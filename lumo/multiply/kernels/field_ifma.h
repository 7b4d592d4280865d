/// Residues modulo p < 2^48 as integers in 8 lanes of 52 bits, lazily reduced (AVX-512 IFMA).
///
/// A multiplication reads only the low 52 bits of its factors, so a register need only be right modulo 2^52
/// while the value it stands for lies in [0, 2^52); 2^52 > 16 p. With q = floor(a w' / 2^52),
/// w' = floor(w 2^52 / p), a w - q p lies in [0, 2 p). Source: Shoup for the quotient; Harvey, "Faster
/// arithmetic for number-theoretic transforms" (2014) for the lazy reduction.
#pragma once

#include <immintrin.h>

#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {

struct Field {
    using V = __m512i;
    using Same = V;  ///< the same value in all lanes
    static constexpr int LANES = 8;
    static constexpr int RADIX_BITS = 4;
    static constexpr bool SIGNED = false;
    static constexpr bool REDUCES_ALL = true;

    V zero, p, minus_p, p_negated, p3, p4, p7, p8, one_q, p_inverse, unit;
    double p_scaled;

    explicit Field(const Vt3Prime& prime)
        : zero(_mm512_setzero_si512()),
          p(all(prime.p)),
          minus_p(all(uint64_t(0) - prime.p)),
          p_negated(all((uint64_t(1) << 52) - prime.p)),
          p3(all(3 * prime.p)),
          p4(all(4 * prime.p)),
          p7(all(7 * prime.p)),
          p8(all(8 * prime.p)),
          one_q(all(prime.one.q)),
          p_inverse(all(prime.p_inverse)),
          unit(all(prime.unit)),
          p_scaled(4503599627370496.0 / double(int64_t(prime.p))) {}

    static V all(uint64_t x) { return _mm512_set1_epi64(int64_t(x)); }
    static V load(const uint64_t* x) { return _mm512_loadu_si512(x); }
    static void store(uint64_t* x, V a) { _mm512_storeu_si512(x, a); }
    /// To whole lines, past the caches.
    static void stream(uint64_t* x, V a) { _mm512_stream_si512(reinterpret_cast<V*>(x), a); }
    static void take_pieces(uint64_t*, size_t) {}
    static __m512i bits(V a) { return a; }
    static V of_bits(__m512i a) { return a; }
    static V add(V a, V b) { return _mm512_add_epi64(a, b); }
    static V sub(V a, V b) { return _mm512_sub_epi64(a, b); }
    /// a - b for b below 8 p, lifted above zero.
    V sub_lifted(V a, V b) const { return sub(add(a, p8), b); }

    V product(V start, V a, Vt3Factor c) const {
        V q = _mm512_madd52hi_epu64(zero, a, all(c.q));
        return _mm512_madd52lo_epu64(_mm512_madd52lo_epu64(start, a, all(c.w)), q, p_negated);
    }
    /// a c in [-p, p).
    V mul_signed(V a, Vt3Factor c) const { return product(minus_p, a, c); }
    /// a c in [0, 2 p).
    V mul(V a, Vt3Factor c) const { return product(zero, a, c); }
    /// Pieces below 2^48, `step` words apart, with the powers of 2^48: up to 2^48 and 2 p for each power.
    template <int COUNT>
    V joined(const uint64_t* pieces, size_t step, const Vt3Factor* powers) const {
        V value = load(pieces), q = zero;
        for (int i = 1; i < COUNT; i++) {
            const V piece = load(pieces + size_t(i) * step);
            q = _mm512_madd52hi_epu64(q, piece, all(powers[i - 1].q));
            value = _mm512_madd52lo_epu64(value, piece, all(powers[i - 1].w));
        }
        return _mm512_madd52lo_epu64(value, q, p_negated);
    }
    /// a in [0, 2 p).
    V norm(V a) const { return _mm512_madd52lo_epu64(a, _mm512_madd52hi_epu64(zero, a, one_q), p_negated); }
    /// a in [7 p, 9 p): four layers up and down stay in [3 p, 13 p).
    V norm_middle(V a) const {
        return _mm512_madd52lo_epu64(add(a, p7), _mm512_madd52hi_epu64(zero, a, one_q), p_negated);
    }
    /// a in [4 p, 6 p).
    V norm_low(V a) const {
        return _mm512_madd52lo_epu64(add(a, p4), _mm512_madd52hi_epu64(zero, a, one_q), p_negated);
    }
    /// Operands of the column transform start 3 p above zero.
    V lift(V a) const { return add(a, p3); }

    /// a b / 2^52 for a b < 2^53 p, in (0, 3 p). Source: Montgomery (1985).
    V mul_var(V a, V b) const { return montgomery(p, a, b); }
    /// Of outputs of the lowest nodes, in (3 p, 11 p): both factors are below 10 p.
    V mul_outputs(V a, V b) const { return montgomery(p4, a, b); }
    V montgomery(V start, V a, V b) const {
        V low = _mm512_madd52lo_epu64(zero, a, b);
        V high = _mm512_madd52hi_epu64(start, a, b);
        return sub(high, _mm512_madd52hi_epu64(zero, _mm512_madd52lo_epu64(zero, low, p_inverse), p));
    }

    /// A factor by lanes with its quotient, as Vt3Factor.
    struct Step {
        V w, q;
    };
    Step step_of(V power) const {
        const V w = mul_var(power, all(1));  // in [1, p): it is no multiple of p
        V q = _mm512_cvttpd_epi64(_mm512_mul_pd(_mm512_cvtepi64_pd(w), _mm512_set1_pd(p_scaled)));
        // The floating quotient is off by at most one: w 2^52 - q p, of which 52 bits tell the sign.
        const V rest =
            _mm512_and_si512(sub(zero, _mm512_madd52lo_epu64(zero, q, p)), all((uint64_t(1) << 52) - 1));
        q = _mm512_mask_sub_epi64(q, _mm512_cmpge_epu64_mask(rest, all(uint64_t(1) << 51)), q, all(1));
        q = _mm512_mask_add_epi64(
            q, _mm512_cmpge_epu64_mask(rest, p) & _mm512_cmplt_epu64_mask(rest, all(uint64_t(1) << 51)), q,
            all(1));
        return {w, q};
    }
    /// Of a power below 2 p, in plain form. Taken from below, the floating quotient is less than 5 too small.
    Step loose_step_of(V power) const {
        const V rest = _mm512_and_si512(power, all((uint64_t(1) << 52) - 1));
        const V w = _mm512_min_epu64(rest, sub(rest, p));
        const __m512d below = _mm512_set1_pd(p_scaled * (1 - 0x1p-51));
        return {w, _mm512_cvttpd_epi64(_mm512_mul_pd(_mm512_cvtepi64_pd(w), below))};
    }
    /// a times a loose factor, in [3 p, 9 p).
    V mul_step_lifted(V a, const Step& step) const { return product(p3, a, step); }
    /// a times the factor, in [-p, p).
    V mul_signed(V a, const Step& step) const { return product(minus_p, a, step); }
    V product(V start, V a, const Step& step) const {
        const V q = _mm512_madd52hi_epu64(zero, a, step.q);
        return _mm512_madd52lo_epu64(_mm512_madd52lo_epu64(start, a, step.w), q, p_negated);
    }
    /// a times the factor, in [0, 2 p).
    V mul_step(V a, const Step& step) const { return product(zero, a, step); }
};

using NarrowField = Field;

}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE
