#include "lumo/series/binary_bbp/block_bbp.h"

#include <algorithm>
#include <bit>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/series/bsr_block_t.h"
#include "lumo/series/merge_products.h"
#include "lumo/series/size_text.h"

namespace lumo {
namespace {

constexpr const char* LOCATION = "BinaryBBP::BSR_BlockB::run()";

std::pair<Region, Region> halves(Region part) {
    const upL_t m = part.e - right_terms(part.terms());
    return {Region(part.s, m), Region(m, part.e)};
}

bool is_serial(Region part, upL_t threads) {
    return part.terms() <= BSR_SERIAL_TERMS || threads < 2;
}

/// P and D only.
template <typename wtype>
Parts<wtype> cut(const Parts<wtype>& whole, upL_t P, upL_t D, bool above) {
    const auto part = [above](const ExactFloat<wtype>& number, upL_t words) {
        return above ? ExactFloat<wtype>(number.base + words, number.capacity - words)
                     : ExactFloat<wtype>(number.base, words);
    };
    return {part(whole.P, P), {}, part(whole.R, D)};
}

template <typename wtype>
Parts<wtype> above(const Parts<wtype>& left) {
    return {free_space_above(left.P), {}, free_space_above(left.R)};
}

}  // namespace

template <typename wtype>
BlockBBP<wtype>::BlockBBP(const BinaryBBP<wtype>& series_, Region range_, upL_t tds_, upL_t levels_)
    : tds(std::max<upL_t>(tds_, 1)), series(series_), range(range_), levels(tds_ <= 1 ? 0 : levels_) {
    const Needs all = needs(range, levels, tds);
    const upL_t words = series.result_words(range.s, range.e) + 8;
    result_words = align_words<wtype>(
        std::max({all.P, all.D, all.work, words, PowerTable<wtype>::storage_words(series, range.terms())}));
    byte_scratch = align_bytes(std::max(all.bytes, merge_scratch_bbp<wtype>(words, tds)));
}

template <typename wtype>
typename BlockBBP<wtype>::Needs BlockBBP<wtype>::needs(Region part, upL_t level, upL_t threads) const {
    // Each level of the recursion rounds the left part's end up to the alignment unit.
    const upL_t overhead =
        WordTraits<wtype>::align_words * static_cast<upL_t>(std::bit_width(part.terms())) + 8;
    Needs result{series.result_words(part.s, part.e) + overhead,
                 series.denominator_words(part.s, part.e) + overhead, 0,
                 merge_scratch_bbp<wtype>(series.result_words(part.s, part.e) + 8, threads)};
    if (is_leaf(part)) return result;
    const auto [low, high] = halves(part);
    result.work = merge_words_bbp(series, low, high, threads);
    if (level == 0 && is_serial(part, threads)) return result;
    const bool forks = level == 0;
    const Needs right = needs(high, forks ? 0 : level - 1, forks ? threads / 2 : threads);
    // The right half has no fewer terms, and larger ones: above the forks it stands for both, so that a plan
    // costs as many steps as there are levels and not as there are parts.
    const Needs left = forks ? needs(low, 0, threads - threads / 2) : right;
    const auto take = [](upL_t& words, upL_t below, upL_t beside) {
        words = align_words<wtype>(std::max(words, align_words<wtype>(below) + beside));
    };
    take(result.P, left.P, right.P);
    take(result.D, left.D, right.D);
    if (forks) {
        take(result.work, left.work, right.work);
        result.bytes = std::max(result.bytes, align_bytes(left.bytes) + align_bytes(right.bytes));
    } else {
        result.work = std::max({result.work, left.work, right.work});
        result.bytes = std::max({result.bytes, left.bytes, right.bytes});
    }
    return result;
}

template <typename wtype>
void BlockBBP<wtype>::run(const MultiplyContext& ctx, StatusNode& status, Parts<wtype>& out,
                          ExactFloat<wtype> T) const {
    if (ctx.tds > tds)
        throw InvalidParametersException(LOCATION,
                                         "Attempted to run with a larger tds than the plan supports.");
    for (const ExactFloat<wtype>* number : {&out.P, &out.Q, &out.R, &T})
        require_capacity(LOCATION, number->capacity, result_words);
    require_capacity(LOCATION, ctx.scratch_bytes, byte_scratch);
    const PowerTable<wtype> table(ctx, series, range.terms(), out.Q);
    run_level(ctx, status, table, range, levels, out, T);
    // The table is not needed any more.
    table.whole_power(ctx, T);
    multiply(ctx, out.Q, T, out.R);
    out.Q.mp2(static_cast<spL_t>(series.ratio.shift * range.terms()));
    out.Q.strip_lzs_aligned();
}

template <typename wtype>
void BlockBBP<wtype>::run_level(const MultiplyContext& ctx, StatusNode& status,
                                const PowerTable<wtype>& table, Region part, upL_t level, Parts<wtype>& out,
                                ExactFloat<wtype> T) const {
    const std::string size = digits_text<wtype>(series.result_words(part.s, part.e));
    if (part.terms() <= BSR_SERIAL_TERMS || level == 0) {
        const StatusSection section(status, {{'B', "  > "}, {'Y', size}});
        MultiplyContext inner = ctx;
        inner.tds = tds;
        fork(inner, table, part, out, T);
        return;
    }
    const auto [low, high] = halves(part);
    Parts<wtype> left = out;
    {
        const StatusSection section(status, {{'G', "0"}});
        run_level(ctx, status, table, low, level - 1, left, T);
    }
    Parts<wtype> right = above(left);
    {
        const StatusSection section(status, {{'G', "1"}});
        run_level(ctx, status, table, high, level - 1, right, T);
    }
    const StatusSection section(status, {{'G', "-  "}, {'Y', size}});
    merge_bbp(ctx, table, high.terms(), left, right, T);
    out.P = left.P;
    out.R = left.R;
}

template <typename wtype>
void BlockBBP<wtype>::fork(const MultiplyContext& ctx, const PowerTable<wtype>& table, Region part,
                           Parts<wtype>& out, ExactFloat<wtype> T) const {
    if (is_serial(part, ctx.tds)) return recurse(ctx.single_threaded(), table, part, out, T);
    const auto [low, high] = halves(part);
    MultiplyContext one = ctx;
    MultiplyContext two = ctx;
    one.tds = ctx.tds - ctx.tds / 2;
    two.tds = ctx.tds / 2;
    const Needs needed = needs(low, 0, one.tds);
    AlignedBufferC scratch = ctx.buffer();
    one = one.with_scratch(scratch.spawn_buffer(align_bytes(needed.bytes)));
    two = two.with_scratch(scratch);
    const upL_t P = align_words<wtype>(needed.P), D = align_words<wtype>(needed.D),
                work = align_words<wtype>(needed.work);
    Parts<wtype> left = cut(out, P, D, false);
    Parts<wtype> right = cut(out, P, D, true);
    parallel_invoke(
        *ctx.parallelizer, [&] { fork(one, table, low, left, ExactFloat<wtype>(T.base, work)); },
        [&] { fork(two, table, high, right, ExactFloat<wtype>(T.base + work, T.capacity - work)); });
    widen(left.P, out.P);
    widen(left.R, out.R);
    merge_bbp(ctx, table, high.terms(), left, right, T);
    out.P = left.P;
    out.R = left.R;
}

template <typename wtype>
void BlockBBP<wtype>::recurse(const MultiplyContext& ctx, const PowerTable<wtype>& table, Region part,
                              Parts<wtype>& out, ExactFloat<wtype> T) const {
    if (is_leaf(part)) {
        series.end(part.s, part.e, out);
        return;
    }
    const auto [low, high] = halves(part);
    Parts<wtype> left = out;
    recurse(ctx, table, low, left, T);
    Parts<wtype> right = above(left);
    recurse(ctx, table, high, right, T);
    merge_bbp(ctx, table, high.terms(), left, right, T);
    out.P = left.P;
    out.R = left.R;
}

template class BlockBBP<std::uint32_t>;
template class BlockBBP<std::uint64_t>;

}  // namespace lumo
