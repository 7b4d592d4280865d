/// Vectors of bytes: `ByteVec` is the widest that the flags of the translation unit allow, in a namespace
/// that carries the instruction set, so that two units never share a function. Only what counting digits
/// needs.
#pragma once

#include <immintrin.h>
#include <stddef.h>
#include <stdint.h>

namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE {

// Members of ByteVec:
//   counters: how many of them a loop may keep in registers beside its operands.
//   lowered(x, above, by): x - by in the lanes where x > above, as signed bytes; x in the others.
//   count_equal(sum, x, byte): sum + 1 in the lanes where x is the byte.
//   total(x): the sum of all lanes, as unsigned bytes.

#if defined(__AVX512BW__)

struct ByteVec {
    static constexpr size_t lanes = 64;
    static constexpr int counters = 16;
    __m512i v;
    static ByteVec load(const char* p) { return {_mm512_loadu_si512(p)}; }
    static ByteVec zero() { return {_mm512_setzero_si512()}; }
    static ByteVec lowered(ByteVec x, char above, char by) {
        const __mmask64 larger = _mm512_cmpgt_epi8_mask(x.v, _mm512_set1_epi8(above));
        return {_mm512_mask_sub_epi8(x.v, larger, x.v, _mm512_set1_epi8(by))};
    }
    static ByteVec count_equal(ByteVec sum, ByteVec x, char byte) {
        const __mmask64 equal = _mm512_cmpeq_epi8_mask(x.v, _mm512_set1_epi8(byte));
        return {_mm512_mask_add_epi8(sum.v, equal, sum.v, _mm512_set1_epi8(1))};
    }
    static uint64_t total(ByteVec x) {
        const __m512i sums = _mm512_sad_epu8(x.v, _mm512_setzero_si512());
        return static_cast<uint64_t>(_mm512_reduce_add_epi64(sums));
    }
};

#elif defined(__AVX2__)

struct ByteVec {
    static constexpr size_t lanes = 32;
    static constexpr int counters = 10;
    __m256i v;
    static ByteVec load(const char* p) { return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))}; }
    static ByteVec zero() { return {_mm256_setzero_si256()}; }
    static ByteVec lowered(ByteVec x, char above, char by) {
        const __m256i larger = _mm256_cmpgt_epi8(x.v, _mm256_set1_epi8(above));
        return {_mm256_sub_epi8(x.v, _mm256_and_si256(larger, _mm256_set1_epi8(by)))};
    }
    static ByteVec count_equal(ByteVec sum, ByteVec x, char byte) {
        return {_mm256_sub_epi8(sum.v, _mm256_cmpeq_epi8(x.v, _mm256_set1_epi8(byte)))};
    }
    static uint64_t total(ByteVec x) {
        const __m256i sums = _mm256_sad_epu8(x.v, _mm256_setzero_si256());
        const __m128i halves = _mm_add_epi64(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
        return static_cast<uint64_t>(_mm_cvtsi128_si64(halves) + _mm_extract_epi64(halves, 1));
    }
};

#else

struct ByteVec {
    static constexpr size_t lanes = 16;
    static constexpr int counters = 10;
    __m128i v;
    static ByteVec load(const char* p) { return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))}; }
    static ByteVec zero() { return {_mm_setzero_si128()}; }
    static ByteVec lowered(ByteVec x, char above, char by) {
        const __m128i larger = _mm_cmpgt_epi8(x.v, _mm_set1_epi8(above));
        return {_mm_sub_epi8(x.v, _mm_and_si128(larger, _mm_set1_epi8(by)))};
    }
    static ByteVec count_equal(ByteVec sum, ByteVec x, char byte) {
        return {_mm_sub_epi8(sum.v, _mm_cmpeq_epi8(x.v, _mm_set1_epi8(byte)))};
    }
    static uint64_t total(ByteVec x) {
        const __m128i halves = _mm_sad_epu8(x.v, _mm_setzero_si128());
        return static_cast<uint64_t>(_mm_cvtsi128_si64(halves) +
                                     _mm_cvtsi128_si64(_mm_srli_si128(halves, 8)));
    }
};

#endif

}  // namespace lumo::kernels::VELMORA_KERNEL_NAMESPACE
