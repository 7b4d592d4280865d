#include "lumo/numbers/words/hash61.h"

#include <emmintrin.h>

#include "lumo/numbers/words/blocks.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

namespace {

using Hash61::fold;
using Hash61::MODULUS;

constexpr upL_t LEAST_WORDS = 10000;

/// 8 h + w. The value stays below 2^62 + 2^4.
std::uint64_t horner_step(std::uint64_t h, std::uint64_t w) {
    return fold((h << 3 & MODULUS) + (h >> 58) + fold(w));
}

/// h 2^12 + w in two lanes, no lane ever above 2^62 + 2^16.
__m128i horner_step_12(__m128i h, __m128i w) {
    const __m128i mask = _mm_set1_epi64x(static_cast<long long>(MODULUS));
    const __m128i turned = _mm_add_epi64(_mm_and_si128(_mm_slli_epi64(h, 12), mask), _mm_srli_epi64(h, 49));
    return _mm_add_epi64(turned, _mm_add_epi64(_mm_and_si128(w, mask), _mm_srli_epi64(w, 61)));
}

/// Horner over `count` words of 64 bits. Four words a round: each of four lanes is a polynomial in
/// 2^12 = 8^4, and the shifts 0, 3, 6 and 9 put them together.
std::uint64_t hash_u64(std::uint64_t h, const unsigned char* A, upL_t count) {
    for (; count % 4 != 0; count--) h = horner_step(h, load_u64(A + 8 * (count - 1)));
    if (count == 0) return h;
    __m128i low = _mm_set_epi64x(0, static_cast<long long>(fold(h)));
    __m128i high = _mm_setzero_si128();
    for (upL_t i = count; i != 0; i -= 4) {
        const auto* words = reinterpret_cast<const __m128i*>(A + 8 * (i - 4));
        low = horner_step_12(low, _mm_loadu_si128(words));
        high = horner_step_12(high, _mm_loadu_si128(words + 1));
    }
    std::uint64_t lanes[4];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(lanes), low);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(lanes + 2), high);
    h = lanes[3];
    for (int lane = 2; lane >= 0; lane--) h = horner_step(h, lanes[lane]);
    return h;
}

template <typename wtype>
std::uint64_t hash_serial(std::uint64_t h, const wtype* A, upL_t L) {
    if constexpr (sizeof(wtype) == 4) {
        if (L % 2 != 0) {
            L--;
            h = Hash61::add(Hash61::mul(h, std::uint64_t(1) << 32), A[L]);
        }
        L /= 2;
    }
    return hash_u64(h, reinterpret_cast<const unsigned char*>(A), L);
}

/// Horner in r^7: seven words, each times its power of r, and h r^7 are below 7 2^125 + 2^123 together, so
/// one reduction does for all of them.
template <typename wtype>
std::uint64_t hash_radix_serial(std::uint64_t h, std::uint64_t r, const wtype* A, upL_t L) {
    constexpr upL_t GROUP = 7;
    r = Hash61::canonical(r);
    h = fold(h);
    for (; L % GROUP != 0; L--) h = Hash61::mul(h, r) + fold(A[L - 1]);
    std::uint64_t powers[GROUP + 1] = {1};
    for (upL_t j = 0; j < GROUP; j++) powers[j + 1] = Hash61::canonical(Hash61::mul(powers[j], r));
    for (; L != 0; L -= GROUP) {
        unsigned __int128 sum = static_cast<unsigned __int128>(h) * powers[GROUP];
        for (upL_t j = 0; j < GROUP; j++) sum += static_cast<unsigned __int128>(A[L - GROUP + j]) * powers[j];
        h = Hash61::fold_128(sum);
    }
    return fold(h);
}

/// Sum of the blocks' own hashes, each times the weight of its place: serial(seed, words, count) is the hash
/// of a run, weight(n) the factor of the words that have n below them.
template <typename wtype, typename Serial, typename Weight>
std::uint64_t hash_blocks(std::uint64_t h, const wtype* A, upL_t L, const ParallelContext& ctx, Serial serial,
                          Weight weight) {
    const upL_t prefix = bp_prefix(A);
    if (L < LEAST_WORDS || runs_serially(L, prefix, 1, ctx)) return serial(h, A, L);

    const BlockCut cut =
        cut_blocks(L - prefix, std::min(ctx.tds, BP_MAX_BLOCKS), LEAST_WORDS, WordTraits<wtype>::align_words);
    std::uint64_t parts[BP_MAX_BLOCKS];
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) {
        const upL_t start = prefix + cut.start(block);
        const std::uint64_t seed = block + 1 == cut.count ? h : 0;
        parts[block] = Hash61::mul(serial(seed, A + start, cut.size(block)), weight(start));
    });
    std::uint64_t sum = serial(0, A, prefix);
    for (upL_t block = 0; block < cut.count; block++) sum = Hash61::add(sum, parts[block]);
    return sum;
}

}  // namespace

template <typename wtype>
std::uint64_t bp_hash(std::uint64_t h, const wtype* A, upL_t L, const ParallelContext& ctx) {
    return hash_blocks(
        h, A, L, ctx,
        [](std::uint64_t seed, const wtype* words, upL_t n) { return hash_serial(seed, words, n); },
        [](upL_t n) { return Hash61::word_power<wtype>(static_cast<spL_t>(n)); });
}

template <typename wtype>
std::uint64_t bp_hash_radix(std::uint64_t h, std::uint64_t r, const wtype* A, upL_t L,
                            const ParallelContext& ctx) {
    return hash_blocks(
        h, A, L, ctx,
        [r](std::uint64_t seed, const wtype* words, upL_t n) { return hash_radix_serial(seed, r, words, n); },
        [r](upL_t n) { return Hash61::pow(r, n); });
}

template std::uint64_t bp_hash(std::uint64_t, const std::uint32_t*, upL_t, const ParallelContext&);
template std::uint64_t bp_hash(std::uint64_t, const std::uint64_t*, upL_t, const ParallelContext&);
template std::uint64_t bp_hash_radix(std::uint64_t, std::uint64_t, const std::uint32_t*, upL_t,
                                     const ParallelContext&);
template std::uint64_t bp_hash_radix(std::uint64_t, std::uint64_t, const std::uint64_t*, upL_t,
                                     const ParallelContext&);

}  // namespace lumo
