/// Short vectors of doubles: `Vec<double, 2>` in plain SSE2, `Vec<double, 4>` in AVX2 with FMA,
/// `Vec<double, 8>` in AVX-512 (F, DQ, VL), with the integers of the same lanes as `Ints`. Only what the
/// kernels use. A form exists where the flags of the translation unit allow it, in a namespace that carries
/// the instruction set, so that two units never share a function.
#pragma once

#include <immintrin.h>
#include <stddef.h>
#include <stdint.h>

#include "lumo/multiply/kernels/fft_kernels.h"

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {

template <typename T, int N>
struct Vec;

// How cut() makes a balanced piece. A field of b + 1 bits, the piece and the bit below it, stands at bit 1 of
// a double whose lowest bit is worth 1/4, above a bit 0 that is set. With the field's sign flipped that is
// 2^50 + (field + 2^b) / 2 + 1/4. Adding CUT_LIFT brings it to 2^52, where it is rounded to an integer: half
// the field, rounded up. cut_drop() takes 2^52 and the bias away.
constexpr double CUT_LIFT = 3377699720527872.0;  // 2^52 - 2^50
constexpr double cut_drop(unsigned b) {
    return 4503599627370496.0 + double(int64_t(1) << (b - 1));
}

// Members of Vec:
//   fma(a, b, c) = a b + c, fnma = c - a b, fms = a b - c, fnms = -a b - c.
//   transpose(): rows become columns.
//   cut(): lanes 0 .. N-1 of half `h` of the 8 pieces in a window, in balanced form: the signed value of the
//     piece plus the bit below it.
// Members of Ints, 64-bit lanes:
//   zip_low, zip_high: lanes 0 or 1 of each 128 bits of a, then of b.
//   transpose_pairs(): N / 2 rows of pairs (128 bits) become columns.
//   store_pairs(): lane i of (low, high) as 16 bytes at p + i stride.

#if defined(__AVX512F__)

template <>
struct Vec<double, 8> {
    static constexpr int lanes = 8;
    __m512d v;
    static Vec load(const double* p) { return {_mm512_loadu_pd(p)}; }
    static Vec all(double x) { return {_mm512_set1_pd(x)}; }
    void store(double* p) const { _mm512_storeu_pd(p, v); }
    friend Vec operator+(Vec a, Vec b) { return {_mm512_add_pd(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm512_sub_pd(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm512_mul_pd(a.v, b.v)}; }
    friend Vec fma(Vec a, Vec b, Vec c) { return {_mm512_fmadd_pd(a.v, b.v, c.v)}; }
    friend Vec fnma(Vec a, Vec b, Vec c) { return {_mm512_fnmadd_pd(a.v, b.v, c.v)}; }
    friend Vec fms(Vec a, Vec b, Vec c) { return {_mm512_fmsub_pd(a.v, b.v, c.v)}; }
    friend Vec fnms(Vec a, Vec b, Vec c) { return {_mm512_fnmsub_pd(a.v, b.v, c.v)}; }
    friend Vec max_magnitude(Vec a, Vec b) { return {_mm512_range_pd(a.v, b.v, 0b1011)}; }

    static void transpose(Vec (&a)[8]) {
        __m512d t[8], u[8];
        for (int i = 0; i < 4; i++) {
            t[2 * i] = _mm512_unpacklo_pd(a[2 * i].v, a[2 * i + 1].v);
            t[2 * i + 1] = _mm512_unpackhi_pd(a[2 * i].v, a[2 * i + 1].v);
        }
        for (int i = 0; i < 2; i++)
            for (int j = 0; j < 2; j++) {
                u[4 * i + j] = _mm512_shuffle_f64x2(t[4 * i + j], t[4 * i + j + 2], 0x88);
                u[4 * i + j + 2] = _mm512_shuffle_f64x2(t[4 * i + j], t[4 * i + j + 2], 0xdd);
            }
        for (int j = 0; j < 4; j++) {
            a[j].v = _mm512_shuffle_f64x2(u[j], u[j + 4], 0x88);
            a[j + 4].v = _mm512_shuffle_f64x2(u[j], u[j + 4], 0xdd);
        }
    }

    struct Cutter {
        __m512i words, shift, mask, frame;
        __m512d lift, drop;
        Cutter(const FftOperand& a, unsigned b)
            : words(_mm512_loadu_si512(a.piece_words)),
              shift(_mm512_loadu_si512(a.shift_down)),
              mask(_mm512_set1_epi64(a.field_mask)),
              frame(_mm512_set1_epi64(a.field_frame)),
              lift(_mm512_set1_pd(CUT_LIFT)),
              drop(_mm512_set1_pd(cut_drop(b))) {}
        Vec cut(const unsigned char* window, int) const {
            __m512i x = _mm512_castsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(window)));
            x = _mm512_srlv_epi64(_mm512_permutexvar_epi32(words, x), shift);
            x = _mm512_ternarylogic_epi64(x, mask, frame, 0x6a);  // (x & mask) ^ frame
            return {_mm512_sub_pd(_mm512_add_pd(_mm512_castsi512_pd(x), lift), drop)};
        }
    };

    struct Ints {
        __m512i v;
        static Ints load(const void* p) { return {_mm512_loadu_si512(p)}; }
        static Ints all(uint64_t x) { return {_mm512_set1_epi64(int64_t(x))}; }
        static Ints bits_of(Vec a) { return {_mm512_castpd_si512(a.v)}; }
        void store(void* p) const { _mm512_storeu_si512(p, v); }
        friend Ints operator+(Ints a, Ints b) { return {_mm512_add_epi64(a.v, b.v)}; }
        friend Ints operator&(Ints a, Ints b) { return {_mm512_and_si512(a.v, b.v)}; }
        friend Ints operator|(Ints a, Ints b) { return {_mm512_or_si512(a.v, b.v)}; }
        friend Ints or_differences(Ints to, Ints a, Ints b) {
            return {_mm512_ternarylogic_epi64(to.v, a.v, b.v, 0xf6)};
        }
        template <int n>
        Ints up() const {
            return {_mm512_slli_epi64(v, n)};
        }
        template <int n>
        Ints down() const {
            return {_mm512_srli_epi64(v, n)};
        }
        friend Ints zip_low(Ints a, Ints b) { return {_mm512_unpacklo_epi64(a.v, b.v)}; }
        friend Ints zip_high(Ints a, Ints b) { return {_mm512_unpackhi_epi64(a.v, b.v)}; }
        static void transpose_pairs(Ints (&a)[4]) {
            __m512i t0 = _mm512_shuffle_i64x2(a[0].v, a[1].v, 0x44);
            __m512i t1 = _mm512_shuffle_i64x2(a[0].v, a[1].v, 0xee);
            __m512i t2 = _mm512_shuffle_i64x2(a[2].v, a[3].v, 0x44);
            __m512i t3 = _mm512_shuffle_i64x2(a[2].v, a[3].v, 0xee);
            a[0].v = _mm512_shuffle_i64x2(t0, t2, 0x88);
            a[1].v = _mm512_shuffle_i64x2(t0, t2, 0xdd);
            a[2].v = _mm512_shuffle_i64x2(t1, t3, 0x88);
            a[3].v = _mm512_shuffle_i64x2(t1, t3, 0xdd);
        }
        static void store_pairs(Ints low, Ints high, unsigned char* p, size_t stride) {
            __m512i even = _mm512_unpacklo_epi64(low.v, high.v), odd = _mm512_unpackhi_epi64(low.v, high.v);
            auto put = [&](size_t i, __m128i pair) {
                _mm_storeu_si128(reinterpret_cast<__m128i*>(p + i * stride), pair);
            };
            put(0, _mm512_castsi512_si128(even));
            put(1, _mm512_castsi512_si128(odd));
            put(2, _mm512_extracti64x2_epi64(even, 1));
            put(3, _mm512_extracti64x2_epi64(odd, 1));
            put(4, _mm512_extracti64x2_epi64(even, 2));
            put(5, _mm512_extracti64x2_epi64(odd, 2));
            put(6, _mm512_extracti64x2_epi64(even, 3));
            put(7, _mm512_extracti64x2_epi64(odd, 3));
        }
    };
};

#elif defined(__AVX2__) && defined(__FMA__)

template <>
struct Vec<double, 4> {
    static constexpr int lanes = 4;
    __m256d v;
    static Vec load(const double* p) { return {_mm256_loadu_pd(p)}; }
    static Vec all(double x) { return {_mm256_set1_pd(x)}; }
    void store(double* p) const { _mm256_storeu_pd(p, v); }
    friend Vec operator+(Vec a, Vec b) { return {_mm256_add_pd(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm256_sub_pd(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm256_mul_pd(a.v, b.v)}; }
    friend Vec fma(Vec a, Vec b, Vec c) { return {_mm256_fmadd_pd(a.v, b.v, c.v)}; }
    friend Vec fnma(Vec a, Vec b, Vec c) { return {_mm256_fnmadd_pd(a.v, b.v, c.v)}; }
    friend Vec fms(Vec a, Vec b, Vec c) { return {_mm256_fmsub_pd(a.v, b.v, c.v)}; }
    friend Vec fnms(Vec a, Vec b, Vec c) { return {_mm256_fnmsub_pd(a.v, b.v, c.v)}; }
    friend Vec max_magnitude(Vec a, Vec b) {
        return {_mm256_max_pd(a.v, _mm256_andnot_pd(_mm256_set1_pd(-0.0), b.v))};
    }

    static void transpose(Vec (&a)[4]) {
        __m256d t0 = _mm256_unpacklo_pd(a[0].v, a[1].v), t1 = _mm256_unpackhi_pd(a[0].v, a[1].v);
        __m256d t2 = _mm256_unpacklo_pd(a[2].v, a[3].v), t3 = _mm256_unpackhi_pd(a[2].v, a[3].v);
        a[0].v = _mm256_permute2f128_pd(t0, t2, 0x20);
        a[1].v = _mm256_permute2f128_pd(t1, t3, 0x20);
        a[2].v = _mm256_permute2f128_pd(t0, t2, 0x31);
        a[3].v = _mm256_permute2f128_pd(t1, t3, 0x31);
    }

    struct Cutter {
        const FftOperand& a;
        __m256i mask, frame;
        __m256d lift, drop;
        Cutter(const FftOperand& operand, unsigned b)
            : a(operand),
              mask(_mm256_set1_epi64x(a.field_mask)),
              frame(_mm256_set1_epi64x(a.field_frame)),
              lift(_mm256_set1_pd(CUT_LIFT)),
              drop(_mm256_set1_pd(cut_drop(b))) {}
        Vec cut(const unsigned char* window, int half) const {
            auto table = [half](const void* p) {
                return _mm256_loadu_si256(static_cast<const __m256i*>(p) + half);
            };
            __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(window));
            x = _mm256_srlv_epi64(_mm256_permutevar8x32_epi32(x, table(a.piece_words)), table(a.shift_down));
            x = _mm256_xor_si256(_mm256_and_si256(x, mask), frame);
            return {_mm256_sub_pd(_mm256_add_pd(_mm256_castsi256_pd(x), lift), drop)};
        }
    };

    struct Ints {
        __m256i v;
        static Ints load(const void* p) { return {_mm256_loadu_si256(static_cast<const __m256i*>(p))}; }
        static Ints all(uint64_t x) { return {_mm256_set1_epi64x(int64_t(x))}; }
        static Ints bits_of(Vec a) { return {_mm256_castpd_si256(a.v)}; }
        void store(void* p) const { _mm256_storeu_si256(static_cast<__m256i*>(p), v); }
        friend Ints operator+(Ints a, Ints b) { return {_mm256_add_epi64(a.v, b.v)}; }
        friend Ints operator&(Ints a, Ints b) { return {_mm256_and_si256(a.v, b.v)}; }
        friend Ints operator|(Ints a, Ints b) { return {_mm256_or_si256(a.v, b.v)}; }
        friend Ints or_differences(Ints to, Ints a, Ints b) {
            return {_mm256_or_si256(to.v, _mm256_xor_si256(a.v, b.v))};
        }
        template <int n>
        Ints up() const {
            return {_mm256_slli_epi64(v, n)};
        }
        template <int n>
        Ints down() const {
            return {_mm256_srli_epi64(v, n)};
        }
        friend Ints zip_low(Ints a, Ints b) { return {_mm256_unpacklo_epi64(a.v, b.v)}; }
        friend Ints zip_high(Ints a, Ints b) { return {_mm256_unpackhi_epi64(a.v, b.v)}; }
        static void transpose_pairs(Ints (&a)[2]) {
            __m256i t = _mm256_permute2x128_si256(a[0].v, a[1].v, 0x20);
            a[1].v = _mm256_permute2x128_si256(a[0].v, a[1].v, 0x31);
            a[0].v = t;
        }
        static void store_pairs(Ints low, Ints high, unsigned char* p, size_t stride) {
            __m256i even = _mm256_unpacklo_epi64(low.v, high.v), odd = _mm256_unpackhi_epi64(low.v, high.v);
            auto put = [&](size_t i, __m128i pair) {
                _mm_storeu_si128(reinterpret_cast<__m128i*>(p + i * stride), pair);
            };
            put(0, _mm256_castsi256_si128(even));
            put(1, _mm256_castsi256_si128(odd));
            put(2, _mm256_extracti128_si256(even, 1));
            put(3, _mm256_extracti128_si256(odd, 1));
        }
    };
};

#else

template <>
struct Vec<double, 2> {
    static constexpr int lanes = 2;
    __m128d v;
    static Vec load(const double* p) { return {_mm_loadu_pd(p)}; }
    static Vec all(double x) { return {_mm_set1_pd(x)}; }
    void store(double* p) const { _mm_storeu_pd(p, v); }
    friend Vec operator+(Vec a, Vec b) { return {_mm_add_pd(a.v, b.v)}; }
    friend Vec operator-(Vec a, Vec b) { return {_mm_sub_pd(a.v, b.v)}; }
    friend Vec operator*(Vec a, Vec b) { return {_mm_mul_pd(a.v, b.v)}; }
    friend Vec fma(Vec a, Vec b, Vec c) { return a * b + c; }
    friend Vec fnma(Vec a, Vec b, Vec c) { return c - a * b; }
    friend Vec fms(Vec a, Vec b, Vec c) { return a * b - c; }
    friend Vec fnms(Vec a, Vec b, Vec c) { return all(0.0) - a * b - c; }
    friend Vec max_magnitude(Vec a, Vec b) {
        return {_mm_max_pd(a.v, _mm_andnot_pd(_mm_set1_pd(-0.0), b.v))};
    }

    static void transpose(Vec (&a)[2]) {
        __m128d t = _mm_unpacklo_pd(a[0].v, a[1].v);
        a[1].v = _mm_unpackhi_pd(a[0].v, a[1].v);
        a[0].v = t;
    }

    struct Cutter {
        unsigned b;
        Cutter(const FftOperand&, unsigned bits) : b(bits) {}
        double piece(const unsigned char* window, unsigned i) const {
            unsigned bit = 7 + i * b;
            uint64_t x;
            __builtin_memcpy(&x, window + bit / 8, 8);
            int64_t field = int64_t(x << (63 - b - bit % 8)) >> (63 - b);
            return double(int32_t((field + 1) >> 1));
        }
        Vec cut(const unsigned char* window, int half) const {
            return {_mm_set_pd(piece(window, unsigned(2 * half + 1)), piece(window, unsigned(2 * half)))};
        }
    };

    struct Ints {
        __m128i v;
        static Ints load(const void* p) { return {_mm_loadu_si128(static_cast<const __m128i*>(p))}; }
        static Ints all(uint64_t x) { return {_mm_set1_epi64x(int64_t(x))}; }
        static Ints bits_of(Vec a) { return {_mm_castpd_si128(a.v)}; }
        void store(void* p) const { _mm_storeu_si128(static_cast<__m128i*>(p), v); }
        friend Ints operator+(Ints a, Ints b) { return {_mm_add_epi64(a.v, b.v)}; }
        friend Ints operator&(Ints a, Ints b) { return {_mm_and_si128(a.v, b.v)}; }
        friend Ints operator|(Ints a, Ints b) { return {_mm_or_si128(a.v, b.v)}; }
        friend Ints or_differences(Ints to, Ints a, Ints b) {
            return {_mm_or_si128(to.v, _mm_xor_si128(a.v, b.v))};
        }
        template <int n>
        Ints up() const {
            return {_mm_slli_epi64(v, n)};
        }
        template <int n>
        Ints down() const {
            return {_mm_srli_epi64(v, n)};
        }
        friend Ints zip_low(Ints a, Ints b) { return {_mm_unpacklo_epi64(a.v, b.v)}; }
        friend Ints zip_high(Ints a, Ints b) { return {_mm_unpackhi_epi64(a.v, b.v)}; }
        static void transpose_pairs(Ints (&)[1]) {}
        static void store_pairs(Ints low, Ints high, unsigned char* p, size_t stride) {
            zip_low(low, high).store(p);
            zip_high(low, high).store(p + stride);
        }
    };
};

#endif

}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE
