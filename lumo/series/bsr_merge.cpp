#include "lumo/series/bsr_merge.h"

#include <algorithm>
#include <optional>

#include "lumo/series/hyperdescent_merge.h"
#include "lumo/series/shared_factor.h"

namespace lumo {
namespace {

/// Up to here one product fits the caches of one core and runs in one thread, so two run side by side.
template <typename wtype>
constexpr upL_t PAIR_WORDS = 1474560 / WordTraits<wtype>::bits;

template <typename wtype>
upL_t pair_scratch(upL_t words, upL_t tds) {
    BufferSizes sizes;
    Multiply::max_buffer_sizes<wtype>(sizes, words, tds);
    return 2 * align_bytes(sizes.array_bytes) + align_bytes(sizes.scratch_bytes);
}

template <typename wtype>
void merge_small(const MultiplyContext& ctx, Parts<wtype>& left, const Parts<wtype>& right,
                 ExactFloat<wtype> T) {
    AlignedBufferC buffer = ctx.buffer();
    const upL_t words = align_words<wtype>(SMALL_WORDS<wtype> + 16);
    ExactFloat<wtype> U(buffer.spawn_words<wtype>(words), words);
    const MultiplyContext inner = ctx.with_scratch(buffer);
    T.set_mul(inner, left.R, right.P);
    U.set_mul(inner, left.P, right.Q);
    // The sum reaches down to the lower of the two ends: give it the room there.
    if (!T.is_zero() && U.exp > T.exp) U.set_mul_extend(inner, left.P, right.Q, T.exp);
    U.add(T);
    left.P.set_ExactFloat(U);
    U.set_mul(inner, left.Q, right.Q);
    left.Q.set_ExactFloat(U);
    left.Q.strip_lzs_aligned();
    if (right.need_R) {
        U.set_mul(inner, left.R, right.R);
        left.R.set_ExactFloat(U);
        left.R.strip_lzs_aligned();
    }
}

}  // namespace

template <typename wtype>
upL_t bsr_merge_scratch(upL_t words, upL_t tds) {
    const upL_t small = align_bytes((SMALL_WORDS<wtype> + 64) * sizeof(wtype)) +
                        Multiply::max_buffer_size<wtype>(std::min(words + 8, SMALL_WORDS<wtype>), 1);
    const upL_t single = pair_scratch<wtype>(words + 8, tds);
    const upL_t pair = tds < 2 ? 0 : 2 * pair_scratch<wtype>(std::min(words + 8, PAIR_WORDS<wtype>), 1) + 256;
    return std::max({small, single, pair});
}

template <typename wtype>
upL_t bsr_merge_least_scratch(upL_t words, upL_t tds) {
    return std::max(bsr_merge_scratch<wtype>(std::min(words, PAIR_WORDS<wtype>), tds),
                    align_bytes(Multiply::max_buffer_size<wtype>(words + 8, tds, true)));
}

template <typename wtype>
void bsr_merge(const MultiplyContext& ctx, const SeriesCommonP2B3<wtype>& series, Parts<wtype>& left,
               const Parts<wtype>& right, ExactFloat<wtype> T) {
    if (series.hyperdescent) {
        hyperdescent_merge(ctx, left, right, T);
        return;
    }
    const upL_t longest = std::max(left.P.L, left.Q.L) + std::max(right.P.L, right.Q.L);
    if (longest + 8 <= small_words<wtype>()) {
        merge_small(ctx, left, right, T);
        return;
    }
    // The bottom of R0 P1 is known before the product: its factors' bottoms add.
    const spL_t emin = left.R.exp + right.P.exp;
    const upL_t ratio_other = right.need_R ? std::max(right.P.L, right.R.L) : right.P.L;
    const upL_t sum_other = std::max(left.P.L, left.Q.L);
    if (ctx.tds >= 2 && longest + 2 <= PAIR_WORDS<wtype>) {
        const auto [low, high] = ctx.buffer().halves();
        const MultiplyContext serial = ctx.single_threaded();
        std::optional<SharedFactor<wtype>> ratio, sum;
        // Right's parts may stand in left's buffers: P0 Q1 is written only after P1 has been read.
        parallel_invoke(
            *ctx.parallelizer,
            [&] {
                ratio.emplace(serial.with_scratch(low), left.R, ratio_other);
                ratio->multiply(T, right.P);
            },
            [&] {
                sum.emplace(serial.with_scratch(high), right.Q, sum_other);
                sum->multiply_and_strip(left.Q, left.Q);
            });
        parallel_invoke(
            *ctx.parallelizer,
            [&] {
                if (right.need_R) ratio->multiply_and_strip(left.R, right.R);
            },
            [&] { sum->multiply(left.P, left.P, emin); });
    } else {
        {
            const SharedFactor<wtype> ratio(ctx, left.R, ratio_other);
            ratio.multiply(T, right.P);
            if (right.need_R) ratio.multiply_and_strip(left.R, right.R);
        }
        const SharedFactor<wtype> sum(ctx, right.Q, sum_other);
        sum.multiply(left.P, left.P, emin);
        sum.multiply_and_strip(left.Q, left.Q);
    }
    left.P.add(T, ctx.parallel());
}

template upL_t bsr_merge_scratch<std::uint32_t>(upL_t, upL_t);
template upL_t bsr_merge_scratch<std::uint64_t>(upL_t, upL_t);
template upL_t bsr_merge_least_scratch<std::uint32_t>(upL_t, upL_t);
template upL_t bsr_merge_least_scratch<std::uint64_t>(upL_t, upL_t);
template void bsr_merge(const MultiplyContext&, const SeriesCommonP2B3<std::uint32_t>&, Parts<std::uint32_t>&,
                        const Parts<std::uint32_t>&, ExactFloat<std::uint32_t>);
template void bsr_merge(const MultiplyContext&, const SeriesCommonP2B3<std::uint64_t>&, Parts<std::uint64_t>&,
                        const Parts<std::uint64_t>&, ExactFloat<std::uint64_t>);

}  // namespace lumo
