#include <immintrin.h>

#include "lumo/numbers/words/block_carry.h"
#include "lumo/numbers/words/blocks.h"

namespace lumo {

namespace {

constexpr upL_t LEAST_WORDS = 8192;

struct Sum {
    static constexpr int SIGN = 1;
    template <typename wtype>
    static unsigned char step(unsigned char carry, const wtype* A, const wtype* B, wtype* T) {
        unsigned long long word;
        carry = _addcarry_u64(carry, load_u64(A), load_u64(B), &word);
        store_u64(T, word);
        return carry;
    }
    static unsigned char single(unsigned char carry, std::uint32_t a, std::uint32_t b, std::uint32_t* T) {
        return _addcarry_u32(carry, a, b, T);
    }
};

struct Difference {
    static constexpr int SIGN = -1;
    template <typename wtype>
    static unsigned char step(unsigned char borrow, const wtype* A, const wtype* B, wtype* T) {
        unsigned long long word;
        borrow = _subborrow_u64(borrow, load_u64(A), load_u64(B), &word);
        store_u64(T, word);
        return borrow;
    }
    static unsigned char single(unsigned char borrow, std::uint32_t a, std::uint32_t b, std::uint32_t* T) {
        return _subborrow_u32(borrow, a, b, T);
    }
};

/// Works on 64 bits at a time for both word types, unrolled so that the carry stays in its flag.
template <typename Op, typename wtype>
unsigned char run_serial(wtype* T, const wtype* A, const wtype* B, upL_t L, unsigned char carry) {
    constexpr upL_t step = 8 / sizeof(wtype);
    upL_t i = 0;
    for (; i + 8 * step <= L; i += 8 * step) {
        carry = Op::step(carry, A + i, B + i, T + i);
        carry = Op::step(carry, A + i + step, B + i + step, T + i + step);
        carry = Op::step(carry, A + i + 2 * step, B + i + 2 * step, T + i + 2 * step);
        carry = Op::step(carry, A + i + 3 * step, B + i + 3 * step, T + i + 3 * step);
        carry = Op::step(carry, A + i + 4 * step, B + i + 4 * step, T + i + 4 * step);
        carry = Op::step(carry, A + i + 5 * step, B + i + 5 * step, T + i + 5 * step);
        carry = Op::step(carry, A + i + 6 * step, B + i + 6 * step, T + i + 6 * step);
        carry = Op::step(carry, A + i + 7 * step, B + i + 7 * step, T + i + 7 * step);
    }
    for (; i + step <= L; i += step) carry = Op::step(carry, A + i, B + i, T + i);
    if constexpr (step == 2)
        if (i < L) carry = Op::single(carry, A[i], B[i], T + i);
    return carry;
}

template <typename Op, typename wtype>
wtype run(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype carry_in, const ParallelContext& ctx) {
    unsigned char carry = carry_in != 0;
    const upL_t prefix = bp_prefix(T);
    if (runs_serially(L, prefix, LEAST_WORDS, ctx)) return run_serial<Op>(T, A, B, L, carry);

    carry = run_serial<Op>(T, A, B, prefix, carry);
    T += prefix, A += prefix, B += prefix;
    const BlockCut cut =
        cut_blocks(L - prefix, std::min(ctx.tds, BP_MAX_BLOCKS), LEAST_WORDS, WordTraits<wtype>::align_words);
    BlockCarry table[BP_MAX_BLOCKS];
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) {
        const upL_t start = cut.start(block);
        const int out = run_serial<Op>(T + start, A + start, B + start, cut.size(block),
                                       block == 0 ? carry : static_cast<unsigned char>(0));
        table[block].carry = static_cast<std::int8_t>(Op::SIGN * out);
    });
    return static_cast<wtype>(Op::SIGN * join_blocks(table, cut, T, ctx));
}

}  // namespace

template <typename wtype>
wtype bp_add(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype carry, const ParallelContext& ctx) {
    return run<Sum>(T, A, B, L, carry, ctx);
}

template <typename wtype>
wtype bp_sub(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype borrow, const ParallelContext& ctx) {
    return run<Difference>(T, A, B, L, borrow, ctx);
}

template std::uint32_t bp_add(std::uint32_t*, const std::uint32_t*, const std::uint32_t*, upL_t,
                              std::uint32_t, const ParallelContext&);
template std::uint64_t bp_add(std::uint64_t*, const std::uint64_t*, const std::uint64_t*, upL_t,
                              std::uint64_t, const ParallelContext&);
template std::uint32_t bp_sub(std::uint32_t*, const std::uint32_t*, const std::uint32_t*, upL_t,
                              std::uint32_t, const ParallelContext&);
template std::uint64_t bp_sub(std::uint64_t*, const std::uint64_t*, const std::uint64_t*, upL_t,
                              std::uint64_t, const ParallelContext&);

}  // namespace lumo
