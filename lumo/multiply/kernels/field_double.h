/// Residues modulo p < 2^48 as doubles in 8 lanes (one vector, or two of AVX2), signed and lazily reduced.
///
/// For |a| < 2^51, |w| <= p / 2 and w' = w / p rounded, w' is off by at most 2^-55, and q = a w' rounded to
/// an integer by at most 1/2 + 2^51 2^-55 < 0.6 from a w / p. With h = a w rounded and l = a w - h exact, h -
/// q p is an integer below 2^49, so both fused steps of (h - q p) + l are exact, and the result is at most
/// 0.6 p. A w' that is a product with 1 / p is off by at most 2^-53: |a| < 2^49.5 keeps the result there.
/// Needs rounding to nearest. Source: Dekker (1971) for the exact product.
#pragma once

#include <immintrin.h>

#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {

#if defined(__AVX512F__)

struct Doubles {
    static constexpr int LANES = 8;
    static constexpr int RADIX_BITS = 4;
    using V = __m512d;
    using Same = V;  ///< the same value in all lanes
    static V all(double x) { return _mm512_set1_pd(x); }
    static V load(const void* x) { return _mm512_loadu_pd(x); }
    static void store(void* x, V a) { _mm512_storeu_pd(x, a); }
    static void stream(void* x, V a) { _mm512_stream_pd(static_cast<double*>(x), a); }
    static V add(V a, V b) { return _mm512_add_pd(a, b); }
    static V sub(V a, V b) { return _mm512_sub_pd(a, b); }
    static V mul(V a, V b) { return _mm512_mul_pd(a, b); }
    static V fma(V a, V b, V c) { return _mm512_fmadd_pd(a, b, c); }
    static V fms(V a, V b, V c) { return _mm512_fmsub_pd(a, b, c); }
    static V fnma(V a, V b, V c) { return _mm512_fnmadd_pd(a, b, c); }
    static V all_words(uint64_t x) { return _mm512_castsi512_pd(_mm512_set1_epi64(int64_t(x))); }
    static V or_bits(V a, V b) {
        return _mm512_castsi512_pd(_mm512_or_si512(_mm512_castpd_si512(a), _mm512_castpd_si512(b)));
    }
    static V and_bits(V a, V b) {
        return _mm512_castsi512_pd(_mm512_and_si512(_mm512_castpd_si512(a), _mm512_castpd_si512(b)));
    }
    static V add_words(V a, V b) {
        return _mm512_castsi512_pd(_mm512_add_epi64(_mm512_castpd_si512(a), _mm512_castpd_si512(b)));
    }
    template <unsigned BITS>
    static V shift_left(V a) {
        return _mm512_castsi512_pd(_mm512_slli_epi64(_mm512_castpd_si512(a), BITS));
    }
    template <unsigned BITS>
    static V shift_right(V a) {
        return _mm512_castsi512_pd(_mm512_srli_epi64(_mm512_castpd_si512(a), BITS));
    }
};

#else

struct Doubles {
    static constexpr int LANES = 4;
    static constexpr int RADIX_BITS = 2;
    using V = __m256d;
    using Same = V;
    static V all(double x) { return _mm256_set1_pd(x); }
    static V load(const void* x) { return _mm256_loadu_pd(static_cast<const double*>(x)); }
    static void store(void* x, V a) { _mm256_storeu_pd(static_cast<double*>(x), a); }
    static V add(V a, V b) { return _mm256_add_pd(a, b); }
    static V sub(V a, V b) { return _mm256_sub_pd(a, b); }
    static V mul(V a, V b) { return _mm256_mul_pd(a, b); }
    static V fma(V a, V b, V c) { return _mm256_fmadd_pd(a, b, c); }
    static V fms(V a, V b, V c) { return _mm256_fmsub_pd(a, b, c); }
    static V fnma(V a, V b, V c) { return _mm256_fnmadd_pd(a, b, c); }
    static V all_words(uint64_t x) { return _mm256_castsi256_pd(_mm256_set1_epi64x(int64_t(x))); }
    static V or_bits(V a, V b) { return _mm256_or_pd(a, b); }
    static V and_bits(V a, V b) { return _mm256_and_pd(a, b); }
    static V add_words(V a, V b) {
        return _mm256_castsi256_pd(_mm256_add_epi64(_mm256_castpd_si256(a), _mm256_castpd_si256(b)));
    }
    template <unsigned BITS>
    static V shift_left(V a) {
        return _mm256_castsi256_pd(_mm256_slli_epi64(_mm256_castpd_si256(a), BITS));
    }
    template <unsigned BITS>
    static V shift_right(V a) {
        return _mm256_castsi256_pd(_mm256_srli_epi64(_mm256_castpd_si256(a), BITS));
    }
};

/// Two vectors side by side: they share constants, and each waits less for itself.
template <typename Half>
struct Pair {
    static constexpr int LANES = 2 * Half::LANES;
    static constexpr int RADIX_BITS = Half::RADIX_BITS;
    using Same = typename Half::V;
    struct V {
        Same low, high;
        V() = default;
        V(Same a, Same b) : low(a), high(b) {}
        V(Same a) : low(a), high(a) {}
        // g++ 12 copies what is trivial to copy 16 bytes at a time, and loads of 32 wait for such stores.
        V(const V& other) : low(other.low), high(other.high) {}
        V& operator=(const V& other) {
            low = other.low;
            high = other.high;
            return *this;
        }
    };
    static Same all(double x) { return Half::all(x); }
    static V load(const void* x) {
        const auto* at = static_cast<const double*>(x);
        return {Half::load(at), Half::load(at + Half::LANES)};
    }
    static void store(void* x, V a) {
        auto* at = static_cast<double*>(x);
        Half::store(at, a.low);
        Half::store(at + Half::LANES, a.high);
    }
    template <typename A, typename B>
    static V add(const A& a, const B& b) {
        return {Half::add(low(a), low(b)), Half::add(high(a), high(b))};
    }
    template <typename A, typename B>
    static V sub(const A& a, const B& b) {
        return {Half::sub(low(a), low(b)), Half::sub(high(a), high(b))};
    }
    template <typename A, typename B>
    static V mul(const A& a, const B& b) {
        return {Half::mul(low(a), low(b)), Half::mul(high(a), high(b))};
    }
    template <typename A, typename B, typename C>
    static V fma(const A& a, const B& b, const C& c) {
        return {Half::fma(low(a), low(b), low(c)), Half::fma(high(a), high(b), high(c))};
    }
    template <typename A, typename B, typename C>
    static V fms(const A& a, const B& b, const C& c) {
        return {Half::fms(low(a), low(b), low(c)), Half::fms(high(a), high(b), high(c))};
    }
    template <typename A, typename B, typename C>
    static V fnma(const A& a, const B& b, const C& c) {
        return {Half::fnma(low(a), low(b), low(c)), Half::fnma(high(a), high(b), high(c))};
    }
    template <typename A, typename B>
    static V or_bits(const A& a, const B& b) {
        return {Half::or_bits(low(a), low(b)), Half::or_bits(high(a), high(b))};
    }

 private:
    static Same low(const V& a) { return a.low; }
    static Same high(const V& a) { return a.high; }
    static Same low(Same a) { return a; }
    static Same high(Same a) { return a; }
};

#endif

template <typename D>
struct FieldOf {
    using V = typename D::V;
    using Same = typename D::Same;
    static constexpr int LANES = D::LANES;
    static constexpr int RADIX_BITS = D::RADIX_BITS;
    static constexpr bool SIGNED = true;
    /// Whether element 0 is reduced in every node, not in every eighth level: in long nodes it costs nothing.
    static constexpr bool REDUCES_ALL = RADIX_BITS >= 4;
    static constexpr double TWO52 = 4503599627370496.0;
    static constexpr double ROUNDER = 1.5 * TWO52;

    Same p, p_reciprocal, rounder, unit;

    explicit FieldOf(const Vt3Prime& prime)
        : p(D::all(double(int64_t(prime.p)))),
          p_reciprocal(D::all(1.0 / double(int64_t(prime.p)))),
          rounder(D::all(ROUNDER)),
          unit(D::all(1.0)) {}

    /// The bits of one double in all lanes.
    static Same all(uint64_t bits) {
        double x;
        __builtin_memcpy(&x, &bits, 8);
        return D::all(x);
    }
    static V load(const uint64_t* x) { return D::load(x); }
    static void store(uint64_t* x, V a) { D::store(x, a); }
    /// Pieces of digits, integers below 2^52, to doubles.
    static void take_pieces(uint64_t* pieces, size_t count) {
        for (size_t i = 0; i < count; i += LANES)
            D::store(pieces + i, D::sub(D::or_bits(D::load(pieces + i), D::all(TWO52)), D::all(TWO52)));
    }
#if defined(__AVX512F__)
    /// To whole lines, past the caches.
    static void stream(uint64_t* x, V a) {
        D::stream(x, a);
    }
    static __m512i bits(V a) {
        return _mm512_castpd_si512(a);
    }
    static V of_bits(__m512i a) {
        return _mm512_castsi512_pd(a);
    }
#endif
    static V add(V a, V b) {
        return D::add(a, b);
    }
    static V sub(V a, V b) {
        return D::sub(a, b);
    }
    V sub_lifted(V a, V b) const {
        return D::sub(a, b);
    }
    template <typename B>
    V reduce(const V& a, const B& b, const V& q) const {
        const V high = D::mul(a, b);
        return D::add(D::fnma(q, p, high), D::fms(a, b, high));
    }
    V mul(V a, Vt3Factor c) const {
        return reduce(a, all(c.w), D::sub(D::fma(a, all(c.q), rounder), rounder));
    }
    V mul_signed(V a, Vt3Factor c) const {
        return mul(a, c);
    }
    /// Pieces below 2^48, `step` words apart, with the powers of 2^48: up to 2^48 and 0.6 p for each power.
    template <int COUNT>
    V joined(const uint64_t* pieces, size_t step, const Vt3Factor* powers) const {
        V value = load(pieces);
#pragma GCC unroll 4
        for (int i = 1; i < COUNT; i++)
            value = add(value, mul(load(pieces + size_t(i) * step), powers[i - 1]));
        return value;
    }
    /// |a| at most p / 2 and a little.
    V norm(V a) const {
        return D::fnma(D::sub(D::fma(a, p_reciprocal, rounder), rounder), p, a);
    }
    V norm_middle(V a) const {
        return norm(a);
    }
    V norm_low(V a) const {
        return norm(a);
    }
    V lift(V a) const {
        return a;
    }
    /// For |a b| < 6 p^2: q is off by less than 0.9, and so much of p is the result at most.
    V mul_var(V a, V b) const {
        const V q = D::sub(D::fma(D::mul(a, b), p_reciprocal, rounder), rounder);
        return reduce(a, b, q);
    }
    V mul_outputs(V a, V b) const {
        return mul_var(a, norm(b));
    }

    /// A factor by lanes with its quotient, as Vt3Factor; both are at most p / 2, the quotient at most
    /// 2^-52 of itself off.
    struct Step {
        V w, q;
    };
    Step step_of(V power) const {
        const V w = norm(power);
        return {w, D::mul(w, p_reciprocal)};
    }
    /// Of a power below 0.6 p, whose quotient is off by less than 2^-52.5.
    Step loose_step_of(V power) const {
        return {power, D::mul(power, p_reciprocal)};
    }
    /// a below 8 p times a loose factor: at most 0.9 p.
    V mul_step_lifted(V a, const Step& step) const {
        return mul_step(a, step);
    }
    V mul_signed(V a, const Step& step) const {
        return mul_step(a, step);
    }
    V mul_step(V a, const Step& step) const {
        return reduce(a, step.w, D::sub(D::fma(a, step.q, rounder), rounder));
    }
};

#if defined(__AVX512F__)
using Field = FieldOf<Doubles>;
#else
using Pairs = Pair<Doubles>;
using Field = FieldOf<Pairs>;
#endif
/// For loops that hold more values than there are registers for pairs of vectors.
using NarrowField = FieldOf<Doubles>;

}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE
