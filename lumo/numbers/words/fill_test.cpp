#include "lumo/numbers/words/blocks.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

namespace {

constexpr upL_t LEAST_WORDS = 1000;

/// A cube of the position: cheap, and far from any sparse or periodic array.
constexpr std::uint32_t pattern(std::uint32_t seed, upL_t i) {
    const std::uint32_t x = seed - 930923655u + static_cast<std::uint32_t>(i);
    return x * x * x * 0xc82b9175u - 933796325u;
}
constexpr std::uint64_t pattern(std::uint64_t seed, upL_t i) {
    const std::uint64_t x = seed + 2760733047673u + i;
    return x * x * x * 2760727302517u + 2760730175003u;
}

}  // namespace

template <typename wtype>
std::uint64_t bp_fill_test(wtype* T, upL_t L, wtype seed, const ParallelContext& ctx) {
    auto fill = [=](upL_t start, upL_t size) {
        for (upL_t i = start; i < start + size; i++) T[i] = pattern(seed, i);
    };
    if (L < LEAST_WORDS || ctx.tds < 2) {
        fill(0, L);
    } else {
        const BlockCut cut = cut_blocks(L, ctx.tds, LEAST_WORDS, WordTraits<wtype>::align_words);
        parallel_for(*ctx.parallelizer, 0, cut.count,
                     [&](upL_t block) { fill(cut.start(block), cut.size(block)); });
    }
    return bp_hash(0, T, L, ctx);
}

template std::uint64_t bp_fill_test(std::uint32_t*, upL_t, std::uint32_t, const ParallelContext&);
template std::uint64_t bp_fill_test(std::uint64_t*, upL_t, std::uint64_t, const ParallelContext&);

}  // namespace lumo
