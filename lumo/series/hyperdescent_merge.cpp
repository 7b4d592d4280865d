#include "lumo/series/hyperdescent_merge.h"

#include <algorithm>

#include "lumo/series/shared_factor.h"

namespace lumo {
namespace {

template <typename wtype>
void merge_small(const MultiplyContext& ctx, Parts<wtype>& left, const Parts<wtype>& right,
                 const ExactFloat<wtype>& P1) {
    AlignedBufferC buffer = ctx.buffer();
    const upL_t words = align_words<wtype>(SMALL_WORDS<wtype> + 16);
    ExactFloat<wtype> U(buffer.spawn_words<wtype>(words), words);
    const MultiplyContext inner = ctx.with_scratch(buffer);
    // Q1 stands in Q0's buffer: P0 first.
    U.set_mul_extend(inner, left.P, right.Q, P1.is_zero() ? left.P.exp + right.Q.exp : P1.exp);
    U.add(P1);
    left.P.set_ExactFloat(U);
    U.set_mul(inner, left.Q, right.Q);
    left.Q.set_ExactFloat(U);
    left.Q.strip_lzs_aligned();
}

}  // namespace

template <typename wtype>
void hyperdescent_merge(const MultiplyContext& ctx, Parts<wtype>& left, const Parts<wtype>& right,
                        ExactFloat<wtype> T) {
    // P1 stands in P0's buffer, which the product needs.
    T.set_ExactFloat(right.P, ctx.parallel());
    const upL_t longest = std::max(left.P.L, left.Q.L) + std::max(right.P.L, right.Q.L);
    if (longest + 8 <= small_words<wtype>()) {
        merge_small(ctx, left, right, T);
        return;
    }
    const SharedFactor<wtype> sum(ctx, right.Q, std::max(left.P.L, left.Q.L));
    sum.multiply(left.P, left.P, T.exp);
    sum.multiply_and_strip(left.Q, left.Q);
    left.P.add(T, ctx.parallel());
}

template void hyperdescent_merge(const MultiplyContext&, Parts<std::uint32_t>&, const Parts<std::uint32_t>&,
                                 ExactFloat<std::uint32_t>);
template void hyperdescent_merge(const MultiplyContext&, Parts<std::uint64_t>&, const Parts<std::uint64_t>&,
                                 ExactFloat<std::uint64_t>);

}  // namespace lumo
