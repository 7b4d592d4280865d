#include "lumo/numbers/words/block_carry.h"
#include "lumo/numbers/words/blocks.h"

namespace lumo {

namespace {

constexpr upL_t LEAST_WORDS = 20000;

/// One double word at a time: with 32-bit words m and the carry are short, so the top word is one of 32 bits.
template <typename wtype>
wtype mul_serial(wtype* T, const wtype* A, upL_t L, wtype m, wtype c) {
    constexpr upL_t step = 8 / sizeof(wtype);
    std::uint64_t carry = c;
    auto one = [&](upL_t i) {
        const unsigned __int128 x = static_cast<unsigned __int128>(load_u64(A + i)) * m + carry;
        store_u64(T + i, static_cast<std::uint64_t>(x));
        carry = static_cast<std::uint64_t>(x >> 64);
    };
    upL_t i = 0;
    for (; i + 4 * step <= L; i += 4 * step) {
        one(i);
        one(i + step);
        one(i + 2 * step);
        one(i + 3 * step);
    }
    for (; i + step <= L; i += step) one(i);
    if constexpr (step == 2)
        if (i < L) {
            const std::uint64_t x = static_cast<std::uint64_t>(A[i]) * m + carry;
            T[i] = static_cast<wtype>(x);
            carry = x >> 32;
        }
    return static_cast<wtype>(carry);
}

/// Adds a whole word at T[0], rippling no further than L words; returns the carry out (0 or 1).
template <typename wtype>
std::int8_t add_word(wtype word, wtype* T, upL_t L) {
    T[0] = static_cast<wtype>(T[0] + word);
    if (T[0] >= word) return 0;
    for (upL_t i = 1; i < L; i++)
        if (++T[i] != 0) return 0;
    return 1;
}

}  // namespace

template <typename wtype>
wtype bp_mul_uW(wtype* T, const wtype* A, upL_t L, wtype m, wtype c, const ParallelContext& ctx) {
    const upL_t prefix = bp_prefix(T);
    if (runs_serially(L, prefix, LEAST_WORDS, ctx)) return mul_serial(T, A, L, m, c);

    c = mul_serial(T, A, prefix, m, c);
    T += prefix, A += prefix;
    const BlockCut cut =
        cut_blocks(L - prefix, std::min(ctx.tds, BP_MAX_BLOCKS), LEAST_WORDS, WordTraits<wtype>::align_words);
    wtype tops[BP_MAX_BLOCKS];
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) {
        const upL_t start = cut.start(block);
        tops[block] = mul_serial(T + start, A + start, cut.size(block), m, block == 0 ? c : wtype(0));
    });
    BlockCarry table[BP_MAX_BLOCKS];
    bool survived = false;
    for (upL_t block = 1; block < cut.count; block++) {
        const upL_t reach = std::min(CARRY_REACH, cut.size(block));
        table[block - 1].carry = add_word(tops[block - 1], T + cut.start(block), reach);
        survived |= table[block - 1].carry != 0;
    }
    wtype top = tops[cut.count - 1];
    if (survived) top = static_cast<wtype>(top + resolve_survivors(table, cut, T, ctx));
    return top;
}

template std::uint32_t bp_mul_uW(std::uint32_t*, const std::uint32_t*, upL_t, std::uint32_t, std::uint32_t,
                                 const ParallelContext&);
template std::uint64_t bp_mul_uW(std::uint64_t*, const std::uint64_t*, upL_t, std::uint64_t, std::uint64_t,
                                 const ParallelContext&);

}  // namespace lumo
