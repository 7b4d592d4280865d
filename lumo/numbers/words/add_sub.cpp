#include "lumo/numbers/words/block_carry.h"
#include "lumo/numbers/words/carry_loops.h"

namespace lumo {

namespace {

constexpr upL_t LEAST_WORDS = 8192;

template <typename Op, typename wtype>
wtype run(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype carry_in, const ParallelContext& ctx) {
    unsigned char carry = carry_in != 0;
    const upL_t prefix = bp_prefix(T);
    if (runs_serially(L, prefix, LEAST_WORDS, ctx)) return run_carry_loop<Op>(T, A, B, L, carry);

    carry = run_carry_loop<Op>(T, A, B, prefix, carry);
    T += prefix, A += prefix, B += prefix;
    const BlockCut cut =
        cut_blocks(L - prefix, std::min(ctx.tds, BP_MAX_BLOCKS), LEAST_WORDS, WordTraits<wtype>::align_words);
    BlockCarry table[BP_MAX_BLOCKS];
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) {
        const upL_t start = cut.start(block);
        const int out = run_carry_loop<Op>(T + start, A + start, B + start, cut.size(block),
                                           block == 0 ? carry : static_cast<unsigned char>(0));
        table[block].carry = static_cast<std::int8_t>(Op::SIGN * out);
    });
    return static_cast<wtype>(Op::SIGN * join_blocks(table, cut, T, ctx));
}

}  // namespace

template <typename wtype>
wtype bp_add(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype carry, const ParallelContext& ctx) {
    return run<CarrySum>(T, A, B, L, carry, ctx);
}

template <typename wtype>
wtype bp_sub(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype borrow, const ParallelContext& ctx) {
    return run<CarryDifference>(T, A, B, L, borrow, ctx);
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
