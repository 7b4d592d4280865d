/// Short vectors of doubles: `Vec<double, 2>` in plain SSE2, `Vec<double, 4>` in AVX2 with FMA,
/// `Vec<double, 8>` in AVX-512 (F, DQ, VL). Only what the kernels use. The forms exist where the flags of the
/// translation unit allow them, in a namespace that carries the instruction set, so that two units never
/// share a function.
///
/// `cut()` takes the 8 pieces of b bits that start at bit 8 of a 32-byte window, together with the bit below
/// each, and returns N of them in balanced form: the signed value of the piece plus the bit below it.
#pragma once

#include <immintrin.h>
#include <stddef.h>
#include <stdint.h>

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {

template <typename T, int N>
struct Vec;

/// Adding this to |x| < 2^51 leaves round(x) + 2^51 in the low 52 bits.
inline constexpr double ROUNDER = 6755399441055744.0;
inline constexpr int64_t ROUNDER_BITS = 0x4338000000000000;

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

    struct Cutter {
        __m512i words, shift;
        __m128i down;
        explicit Cutter(unsigned b) {
            alignas(64) int32_t w[16];
            alignas(64) int64_t s[8];
            for (unsigned i = 0; i < 8; i++) {
                unsigned bit = 7 + i * b;
                w[2 * i] = int32_t(bit / 32);
                w[2 * i + 1] = int32_t(bit / 32 + 1);
                s[i] = int64_t(64 - (bit % 32 + b + 1));
            }
            words = _mm512_load_si512(w);
            shift = _mm512_load_si512(s);
            down = _mm_cvtsi32_si128(int(63 - b));
        }
        Vec cut(const unsigned char* window, int) const {
            __m512i x = _mm512_castsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(window)));
            x = _mm512_sllv_epi64(_mm512_permutexvar_epi32(words, x), shift);
            x = _mm512_add_epi64(_mm512_sra_epi64(x, down), _mm512_set1_epi64(1));
            return {_mm512_cvtepi64_pd(_mm512_srai_epi64(x, 1))};
        }
    };

    /// Accumulates the rounding checks of coefficients and hands out their integers.
    struct Rounder {
        __m512d worst = _mm512_setzero_pd();
        __m512i range = _mm512_setzero_si512();
        void round(Vec x, Vec scale, int64_t* out) {
            __m512d magic = _mm512_set1_pd(ROUNDER);
            __m512d y = _mm512_fmadd_pd(x.v, scale.v, magic);
            __m512d r = _mm512_sub_pd(y, magic);
            worst = _mm512_range_pd(worst, _mm512_fmsub_pd(x.v, scale.v, r), 0b1011);
            __m512i bits = _mm512_castpd_si512(y);
            __m512i base = _mm512_set1_epi64(ROUNDER_BITS);
            range = _mm512_ternarylogic_epi64(range, bits, base, 0xf6);  // range | (bits ^ base)
            _mm512_storeu_si512(out, _mm512_sub_epi64(bits, base));
        }
        double error() const { return _mm512_reduce_max_pd(worst); }
        uint64_t overflow() const { return uint64_t(_mm512_reduce_or_epi64(range)) >> 52; }
    };

    /// Rows become columns.
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

    struct Cutter {
        __m256i words[2], shift[2], mask, sign, magic;
        double bias;
        explicit Cutter(unsigned b) {
            for (unsigned h = 0; h < 2; h++) {
                alignas(32) int32_t w[8];
                alignas(32) int64_t s[4];
                for (unsigned i = 0; i < 4; i++) {
                    unsigned bit = 7 + (4 * h + i) * b;
                    w[2 * i] = int32_t(bit / 32);
                    w[2 * i + 1] = int32_t(bit / 32 + 1);
                    s[i] = int64_t(bit % 32);
                }
                words[h] = _mm256_load_si256(reinterpret_cast<const __m256i*>(w));
                shift[h] = _mm256_load_si256(reinterpret_cast<const __m256i*>(s));
            }
            mask = _mm256_set1_epi64x((int64_t(2) << b) - 1);
            sign = _mm256_set1_epi64x(int64_t(1) << b);
            magic = _mm256_castpd_si256(_mm256_set1_pd(4503599627370496.0));
            bias = 4503599627370496.0 + double(int64_t(1) << (b - 1));
        }
        Vec cut(const unsigned char* window, int half) const {
            __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(window));
            x = _mm256_srlv_epi64(_mm256_permutevar8x32_epi32(x, words[half]), shift[half]);
            // The field with its sign flipped is biased by 2^b; half of it, rounded up, by 2^(b-1).
            x = _mm256_xor_si256(_mm256_and_si256(x, mask), sign);
            x = _mm256_srli_epi64(_mm256_add_epi64(x, _mm256_set1_epi64x(1)), 1);
            return Vec{_mm256_castsi256_pd(_mm256_or_si256(x, magic))} - all(bias);
        }
    };

    struct Rounder {
        __m256d worst = _mm256_setzero_pd();
        __m256i range = _mm256_setzero_si256();
        void round(Vec x, Vec scale, int64_t* out) {
            __m256d magic = _mm256_set1_pd(ROUNDER);
            __m256d y = _mm256_fmadd_pd(x.v, scale.v, magic);
            __m256d r = _mm256_sub_pd(y, magic);
            __m256d off = _mm256_andnot_pd(_mm256_set1_pd(-0.0), _mm256_fmsub_pd(x.v, scale.v, r));
            worst = _mm256_max_pd(worst, off);
            __m256i bits = _mm256_castpd_si256(y);
            __m256i base = _mm256_set1_epi64x(ROUNDER_BITS);
            range = _mm256_or_si256(range, _mm256_xor_si256(bits, base));
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_sub_epi64(bits, base));
        }
        double error() const {
            alignas(32) double w[4];
            _mm256_store_pd(w, worst);
            double e = w[0];
            for (int i = 1; i < 4; i++) e = w[i] > e ? w[i] : e;
            return e;
        }
        uint64_t overflow() const {
            alignas(32) uint64_t w[4];
            _mm256_store_si256(reinterpret_cast<__m256i*>(w), range);
            return (w[0] | w[1] | w[2] | w[3]) >> 52;
        }
    };

    static void transpose(Vec (&a)[4]) {
        __m256d t0 = _mm256_unpacklo_pd(a[0].v, a[1].v), t1 = _mm256_unpackhi_pd(a[0].v, a[1].v);
        __m256d t2 = _mm256_unpacklo_pd(a[2].v, a[3].v), t3 = _mm256_unpackhi_pd(a[2].v, a[3].v);
        a[0].v = _mm256_permute2f128_pd(t0, t2, 0x20);
        a[1].v = _mm256_permute2f128_pd(t1, t3, 0x20);
        a[2].v = _mm256_permute2f128_pd(t0, t2, 0x31);
        a[3].v = _mm256_permute2f128_pd(t1, t3, 0x31);
    }
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

    struct Cutter {
        unsigned b;
        explicit Cutter(unsigned bits) : b(bits) {}
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

    struct Rounder {
        __m128d worst = _mm_setzero_pd();
        __m128i range = _mm_setzero_si128();
        void round(Vec x, Vec scale, int64_t* out) {
            // Without a fused step the product is rounded once more; the scale is near a power of two and
            // the error of that step is far below the one that is measured.
            Vec y = x * scale;
            __m128d magic = _mm_set1_pd(ROUNDER);
            __m128d z = _mm_add_pd(y.v, magic);
            __m128d r = _mm_sub_pd(z, magic);
            worst = _mm_max_pd(worst, _mm_andnot_pd(_mm_set1_pd(-0.0), _mm_sub_pd(y.v, r)));
            __m128i bits = _mm_castpd_si128(z);
            __m128i base = _mm_set1_epi64x(ROUNDER_BITS);
            range = _mm_or_si128(range, _mm_xor_si128(bits, base));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_sub_epi64(bits, base));
        }
        double error() const {
            double w[2];
            _mm_storeu_pd(w, worst);
            return w[0] > w[1] ? w[0] : w[1];
        }
        uint64_t overflow() const {
            uint64_t w[2];
            _mm_storeu_si128(reinterpret_cast<__m128i*>(w), range);
            return (w[0] | w[1]) >> 52;
        }
    };

    static void transpose(Vec (&a)[2]) {
        __m128d t = _mm_unpacklo_pd(a[0].v, a[1].v);
        a[1].v = _mm_unpackhi_pd(a[0].v, a[1].v);
        a[0].v = t;
    }
};

#endif

}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE
