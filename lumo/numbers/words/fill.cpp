#include "lumo/numbers/words/blocks.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

namespace {

constexpr upL_t LEAST_WORDS = 16384;

/// Runs body(start, end) over [0, L): the prefix in the caller's thread, the aligned blocks in parallel.
template <typename wtype, typename Body>
void over_blocks(const wtype* T, upL_t L, const ParallelContext& ctx, Body body) {
    const upL_t prefix = bp_prefix(T);
    if (runs_serially(L, prefix, LEAST_WORDS, ctx)) {
        body(0, L);
        return;
    }
    body(0, prefix);
    const BlockCut cut = cut_blocks(L - prefix, ctx.tds, LEAST_WORDS, WordTraits<wtype>::align_words);
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) {
        const upL_t start = prefix + cut.start(block);
        body(start, start + cut.size(block));
    });
}

}  // namespace

template <typename wtype>
void bp_fill(wtype* T, upL_t L, wtype value, const ParallelContext& ctx) {
    over_blocks(T, L, ctx, [=](upL_t start, upL_t end) { std::fill(T + start, T + end, value); });
}

template <typename wtype>
void bp_zero(wtype* T, upL_t L, const ParallelContext& ctx) {
    bp_fill(T, L, wtype(0), ctx);
}

template <typename wtype>
void bp_not(wtype* T, const wtype* A, upL_t L, const ParallelContext& ctx) {
    over_blocks(T, L, ctx, [=](upL_t start, upL_t end) {
        for (upL_t i = start; i < end; i++) T[i] = static_cast<wtype>(~A[i]);
    });
}

template <typename wtype>
upL_t bp_strip(wtype value, const wtype* A, upL_t L, const ParallelContext& ctx) {
    auto strip = [=](upL_t start, upL_t end) {
        while (end > start && A[end - 1] == value) end--;
        return end;
    };
    const upL_t prefix = bp_prefix(A);
    if (L == 0 || A[L - 1] != value || runs_serially(L, prefix, LEAST_WORDS, ctx)) return strip(0, L);

    const BlockCut cut =
        cut_blocks(L - prefix, std::min(ctx.tds, BP_MAX_BLOCKS), LEAST_WORDS, WordTraits<wtype>::align_words);
    upL_t ends[BP_MAX_BLOCKS];
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) {
        const upL_t start = prefix + cut.start(block);
        ends[block] = strip(start, start + cut.size(block));
    });
    for (upL_t block = cut.count; block-- > 0;)
        if (ends[block] != prefix + cut.start(block)) return ends[block];
    return strip(0, prefix);
}

template void bp_fill(std::uint32_t*, upL_t, std::uint32_t, const ParallelContext&);
template void bp_zero(std::uint32_t*, upL_t, const ParallelContext&);
template void bp_not(std::uint32_t*, const std::uint32_t*, upL_t, const ParallelContext&);
template upL_t bp_strip(std::uint32_t, const std::uint32_t*, upL_t, const ParallelContext&);
template void bp_fill(std::uint64_t*, upL_t, std::uint64_t, const ParallelContext&);
template void bp_zero(std::uint64_t*, upL_t, const ParallelContext&);
template void bp_not(std::uint64_t*, const std::uint64_t*, upL_t, const ParallelContext&);
template upL_t bp_strip(std::uint64_t, const std::uint64_t*, upL_t, const ParallelContext&);

}  // namespace lumo
