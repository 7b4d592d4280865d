#include "lumo/series/brent_mcmillan/block_ab.h"

#include <algorithm>
#include <bit>

#include "lumo/series/bsr_block_t.h"

namespace lumo {
namespace {

bool is_serial(Region range, upL_t threads) {
    return range.terms() <= BSR_SERIAL_TERMS || threads < 2;
}

SizesAB larger(const SizesAB& a, const SizesAB& b) {
    return {std::max(a.T, b.T), std::max(a.V, b.V), std::max(a.C, b.C), std::max(a.D, b.D)};
}

SizesAB both_of(const SizesAB& a, const SizesAB& b) {
    return {a.T + b.T, a.V + b.V, a.C + b.C, a.D + b.D};
}

/// The lower `below` words of a buffer, and the rest.
template <typename wtype>
std::pair<ExactFloat<wtype>, ExactFloat<wtype>> cut_at(const ExactFloat<wtype>& whole, upL_t below) {
    return {ExactFloat<wtype>(whole.base, below),
            ExactFloat<wtype>(whole.base + below, whole.capacity - below)};
}

}  // namespace

template <typename wtype>
BlockAB<wtype>::BlockAB(const SeriesBrentMcMillanAB<wtype>& series_, Region range_, upL_t tds_)
    : series(series_), range(range_), tds(tds_) {
    const Needs all = needs(range, tds);
    sizes = all.sizes;
    work_words = all.work_words;
    byte_scratch = align_bytes(all.byte_scratch);
    product_words = series.V_words(range.s, range.e) + 8;
}

template <typename wtype>
SizesAB BlockAB<wtype>::result_sizes(Region part) const {
    // Each level of the recursion rounds the left part's end up to the alignment unit.
    const upL_t levels = static_cast<upL_t>(std::bit_width(part.terms()));
    const upL_t overhead = 2 * WordTraits<wtype>::align_words * levels;
    const auto room = [&](upL_t words) { return align_words<wtype>(words + overhead); };
    return {room(series.T_words(part.s, part.e)), room(series.V_words(part.s, part.e)),
            room(series.C_words(part.s, part.e)), room(series.D_words(part.s, part.e))};
}

/// Enough for every merge inside either half, too: no part of one is larger than the half.
template <typename wtype>
TempsAB BlockAB<wtype>::temps(Region part, upL_t m) const {
    const auto words = [&](upL_t a, upL_t b) {
        return SizesAB{series.T_words(a, b), series.V_words(a, b), series.C_words(a, b),
                       series.D_words(a, b)};
    };
    return merge_temps_ab<wtype>(larger(words(part.s, m), words(m, part.e)));
}

template <typename wtype>
typename BlockAB<wtype>::Needs BlockAB<wtype>::needs(Region part, upL_t threads) const {
    Needs result{result_sizes(part), 0, merge_scratch_ab<wtype>(series.V_words(part.s, part.e), threads)};
    if (part.terms() == 1) return result;
    const upL_t m = series.split(part.s, part.e);
    result.work_words = temps(part, m).sum();
    if (is_serial(part, threads)) return result;
    const Needs left = needs(Region(part.s, m), threads - threads / 2);
    const Needs right = needs(Region(m, part.e), threads / 2);
    result.sizes = larger(result.sizes, both_of(left.sizes, right.sizes));
    result.work_words = std::max(result.work_words, left.work_words + right.work_words);
    result.byte_scratch =
        std::max(result.byte_scratch, align_bytes(left.byte_scratch) + align_bytes(right.byte_scratch));
    return result;
}

template <typename wtype>
void BlockAB<wtype>::run(const MultiplyContext& ctx, PartsAB<wtype>& out,
                         LinearWordBuffer<wtype> work) const {
    constexpr const char* LOCATION = "BrentMcMillanAB::BSR_BlockT::run()";
    require_capacity(LOCATION, out.T.capacity, sizes.T);
    require_capacity(LOCATION, out.V.capacity, sizes.V);
    require_capacity(LOCATION, out.C.capacity, sizes.C);
    require_capacity(LOCATION, out.D.capacity, sizes.D);
    require_capacity(LOCATION, work.size(), work_words);
    require_capacity(LOCATION, ctx.scratch_bytes, byte_scratch);
    MultiplyContext inner = ctx;
    inner.tds = tds;
    fork(inner, range, out, work);
}

template <typename wtype>
void BlockAB<wtype>::fork(const MultiplyContext& ctx, Region part, PartsAB<wtype>& out,
                          LinearWordBuffer<wtype> work) const {
    if (part.terms() == 1) return leaf_ab(series, part, out);
    const upL_t m = series.split(part.s, part.e);
    LinearWordBuffer<wtype> own = work;
    if (is_serial(part, ctx.tds))
        return recurse(ctx.single_threaded(), part, out, cut_work(own, temps(part, m)));

    MultiplyContext low = ctx;
    MultiplyContext high = ctx;
    low.tds = ctx.tds - ctx.tds / 2;
    high.tds = ctx.tds / 2;
    const Needs needed = needs(Region(part.s, m), low.tds);
    AlignedBufferC scratch = ctx.buffer();
    low = low.with_scratch(scratch.spawn_buffer(needed.byte_scratch));
    high = high.with_scratch(scratch);
    LinearWordBuffer<wtype> high_work = work;
    const LinearWordBuffer<wtype> low_work(high_work.cut_from_bottom(needed.work_words), needed.work_words);
    const auto [T0, T1] = cut_at(out.T, needed.sizes.T);
    const auto [V0, V1] = cut_at(out.V, needed.sizes.V);
    const auto [C0, C1] = cut_at(out.C, needed.sizes.C);
    const auto [D0, D1] = cut_at(out.D, needed.sizes.D);
    PartsAB<wtype> left{T0, V0, C0, D0, true};
    PartsAB<wtype> right{T1, V1, C1, D1, out.need_C};
    parallel_invoke(
        *ctx.parallelizer, [&] { fork(low, Region(part.s, m), left, low_work); },
        [&] { fork(high, Region(m, part.e), right, high_work); });
    widen(left.T, out.T);
    widen(left.V, out.V);
    widen(left.C, out.C);
    widen(left.D, out.D);
    merge_ab(ctx, 2 * series.k() * (m - part.s), left, right, cut_work(own, temps(part, m)));
    left.need_C = out.need_C;
    out = left;
}

template <typename wtype>
void BlockAB<wtype>::recurse(const MultiplyContext& ctx, Region part, PartsAB<wtype>& out,
                             const WorkAB<wtype>& work) const {
    if (part.terms() <= LEAF_TERMS_AB) return leaf_ab(series, part, out);
    const upL_t m = series.split(part.s, part.e);
    PartsAB<wtype> left{out.T, out.V, out.C, out.D, true};
    recurse(ctx, Region(part.s, m), left, work);
    PartsAB<wtype> right{free_space_above(left.T), free_space_above(left.V), free_space_above(left.C),
                         free_space_above(left.D), out.need_C};
    recurse(ctx, Region(m, part.e), right, work);
    merge_ab(ctx, 2 * series.k() * (m - part.s), left, right, work);
    left.need_C = out.need_C;
    out = left;
}

template class BlockAB<std::uint32_t>;
template class BlockAB<std::uint64_t>;

}  // namespace lumo
