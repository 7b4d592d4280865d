/// Compiled with the SHA and SSE 4.1 instructions on; includes nothing whose inline functions others share.
///
/// Two rounds an instruction on the state as the pair of vectors (a, b, e, f) and (c, d, g, h), highest lane
/// first. Instruction semantics: Intel 64 and IA-32 Architectures Software Developer's Manual, vol. 2.
#include <immintrin.h>

#include "lumo/foundation/digest/sha2_blocks.h"
#include "lumo/foundation/digest/sha2_constants.h"

namespace lumo {

namespace {

struct RoundConstants {
    alignas(16) std::uint32_t k[64];
};

constexpr RoundConstants upper_halves() {
    RoundConstants table{};
    for (int t = 0; t < 64; t++) table.k[t] = static_cast<std::uint32_t>(Sha2Constants::CUBE_ROOTS[t] >> 32);
    return table;
}

constexpr RoundConstants CONSTANTS = upper_halves();

}  // namespace

void sha256_blocks_native(std::uint32_t* state, const std::uint8_t* data, std::size_t count) {
    const __m128i swap_bytes = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
    auto* vectors = reinterpret_cast<__m128i*>(state);
    const __m128i dcba = _mm_loadu_si128(vectors), hgfe = _mm_loadu_si128(vectors + 1);
    const __m128i cdab = _mm_shuffle_epi32(dcba, 0xB1), efgh = _mm_shuffle_epi32(hgfe, 0x1B);
    __m128i abef = _mm_alignr_epi8(cdab, efgh, 8), cdgh = _mm_blend_epi16(efgh, cdab, 0xF0);

    for (; count > 0; count--, data += 64) {
        const __m128i abef_before = abef, cdgh_before = cdgh;
        __m128i w[4];  // the last sixteen words of the schedule
        for (int i = 0; i < 4; i++) {
            const auto* words = reinterpret_cast<const __m128i*>(data) + i;
            w[i] = _mm_shuffle_epi8(_mm_loadu_si128(words), swap_bytes);
        }
#pragma GCC unroll 16
        for (int i = 0; i < 16; i++) {
            const auto* k = reinterpret_cast<const __m128i*>(CONSTANTS.k) + i;
            __m128i sum = _mm_add_epi32(w[i % 4], _mm_load_si128(k));
            cdgh = _mm_sha256rnds2_epu32(cdgh, abef, sum);
            sum = _mm_shuffle_epi32(sum, 0x0E);
            abef = _mm_sha256rnds2_epu32(abef, cdgh, sum);
            if (i < 12) {
                const __m128i older = w[i % 4], old = w[(i + 1) % 4], recent = w[(i + 2) % 4],
                              last = w[(i + 3) % 4];
                const __m128i seventh = _mm_alignr_epi8(last, recent, 4);
                w[i % 4] =
                    _mm_sha256msg2_epu32(_mm_add_epi32(_mm_sha256msg1_epu32(older, old), seventh), last);
            }
        }
        abef = _mm_add_epi32(abef, abef_before);
        cdgh = _mm_add_epi32(cdgh, cdgh_before);
    }

    const __m128i feba = _mm_shuffle_epi32(abef, 0x1B), dchg = _mm_shuffle_epi32(cdgh, 0xB1);
    _mm_storeu_si128(vectors, _mm_blend_epi16(feba, dchg, 0xF0));
    _mm_storeu_si128(vectors + 1, _mm_alignr_epi8(dchg, feba, 8));
}

}  // namespace lumo
