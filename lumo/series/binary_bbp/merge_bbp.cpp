#include "lumo/series/binary_bbp/merge_bbp.h"

#include <algorithm>

#include "lumo/series/bsr_merge.h"
#include "lumo/series/merge_products.h"

namespace lumo {
namespace {

/// Up to here one product fits the caches of one core and runs in one thread, so two run side by side.
template <typename wtype>
constexpr upL_t PAIR_WORDS = 1474560 / WordTraits<wtype>::bits;

}  // namespace

template <typename wtype>
upL_t merge_words_bbp(const BinaryBBP<wtype>& series, Region left, Region right, upL_t threads) {
    const upL_t cross = align_words<wtype>(series.denominator_words(left.s, left.e) +
                                           series.result_words(right.s, right.e) + 8);
    if (threads < 2 || series.result_words(left.s, right.e) > PAIR_WORDS<wtype>) return cross;
    return cross + align_words<wtype>(series.denominator_words(right.s, right.e) +
                                      series.power_words(right.terms()) + 8);
}

template <typename wtype>
upL_t merge_scratch_bbp(upL_t words, upL_t tds) {
    const upL_t single = bsr_merge_scratch<wtype>(words, tds);
    if (tds < 2) return single;
    return std::max(
        single, 2 * bsr_merge_scratch<wtype>(std::min(words, PAIR_WORDS<wtype>), 1) + 2 * ALIGNMENT_BYTES);
}

template <typename wtype>
void merge_bbp(const MultiplyContext& ctx, const PowerTable<wtype>& table, upL_t n, Parts<wtype>& left,
               const Parts<wtype>& right, ExactFloat<wtype> T) {
    const upL_t cross = align_words<wtype>(left.R.L + right.P.L);
    const upL_t scaled = right.R.L + table.scale_words(n);
    const bool pair = left.P.L + scaled <= PAIR_WORDS<wtype>;
    const bool apart = pair && T.capacity >= cross + scaled;
    // One thread makes each of a pair.
    MultiplyContext two = ctx;
    two.tds = pair ? std::min<upL_t>(ctx.tds, 2) : ctx.tds;
    ExactFloat<wtype> W = free_space_above(left.P);  // on P1, which has been read by then
    if (apart) {
        W = ExactFloat<wtype>(T.base + cross, T.capacity - cross);
        T.capacity = cross;
    }
    both(
        two, apart, [&](const MultiplyContext& own) { multiply(own, T, left.R, right.P); },
        [&](const MultiplyContext& own) { table.scale(own, W, right.R, n); });
    both(
        two, pair,
        [&](const MultiplyContext& own) {
            multiply(own, left.P, left.P, W, T.exp);
            left.P.add(T, own.parallel());
        },
        [&](const MultiplyContext& own) {
            multiply(own, left.R, left.R, right.R);
            left.R.strip_lzs_aligned();
        });
}

#define LUMO_INSTANTIATE(wtype)                                                                     \
    template upL_t merge_words_bbp(const BinaryBBP<wtype>&, Region, Region, upL_t);                 \
    template upL_t merge_scratch_bbp<wtype>(upL_t, upL_t);                                          \
    template void merge_bbp(const MultiplyContext&, const PowerTable<wtype>&, upL_t, Parts<wtype>&, \
                            const Parts<wtype>&, ExactFloat<wtype>);
LUMO_INSTANTIATE(std::uint32_t)
LUMO_INSTANTIATE(std::uint64_t)
#undef LUMO_INSTANTIATE

}  // namespace lumo
