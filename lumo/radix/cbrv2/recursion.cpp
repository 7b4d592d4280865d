#include "lumo/radix/cbrv2/recursion.h"

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/radix/cbrv2/fraction_view.h"
#include "lumo/radix/cbrv2/leaf_convert.h"
#include "lumo/radix/cbrv2/remainder_float.h"

namespace lumo {

template <typename wtype>
auto CBRv2<wtype>::convert_T(StatusIteration& progress, const MultiplyContext& ctx, wtype* out_end, upL_t n,
                             upL_t level, const Number& value) const -> Result {
    level = plan.level_of(n, level);
    if (level == 0 || n < plan.parallel_length) {
        const Result result = convert_L(ctx.single_threaded(), out_end, n, level, value);
        progress.complete(n);
        return result;
    }
    const PowerRow<wtype>& row = plan.rows[level - 1];
    const upL_t s = row.split;
    const Number whole = shorten(value, n);
    AlignedBufferC buffer = ctx.buffer();
    const Number low_value = fraction(ctx, buffer, level - 1, n - s, whole);

    Result top, low;
    const auto run_low = [&](const MultiplyContext& context) {
        low = convert_T(progress, context, out_end - s, n - s, level - 1, low_value);
    };
    const auto run_top = [&](const MultiplyContext& context) {
        top = convert_T(progress, context, out_end, s, level - 1, whole);
    };
    if (ctx.tds > 1) {
        const auto [first, second] = buffer.halves();
        MultiplyContext low_ctx = ctx.with_scratch(first);
        MultiplyContext top_ctx = ctx.with_scratch(second);
        low_ctx.tds = top_ctx.tds = (ctx.tds + 1) / 2;
        parallel_invoke(
            *ctx.parallelizer, [&] { run_top(top_ctx); }, [&] { run_low(low_ctx); });
    } else {
        run_low(ctx.with_scratch(buffer));
        run_top(ctx.with_scratch(buffer));
    }
    return join("CBRv2::convert_T()", out_end, n, s, top, low);
}

template <typename wtype>
auto CBRv2<wtype>::convert_L(const MultiplyContext& ctx, wtype* out_end, upL_t n, upL_t level,
                             const Number& value) const -> Result {
    level = plan.level_of(n, level);
    const Number whole = shorten(value, n);
    if (level == 0) return leaf(out_end, n, whole);
    const upL_t s = plan.rows[level - 1].split;
    AlignedBufferC buffer = ctx.buffer();
    const Number low_value = fraction(ctx, buffer, level - 1, n - s, whole);
    const MultiplyContext rest = ctx.with_scratch(buffer);
    const Result low = convert_L(rest, out_end - s, n - s, level - 1, low_value);
    const Result top = convert_L(rest, out_end, s, level - 1, whole);
    return join("CBRv2::convert_L()", out_end, n, s, top, low);
}

template <typename wtype>
auto CBRv2<wtype>::leaf(wtype* out_end, upL_t n, const Number& value) const -> Result {
    Result result;
    result.overlap = convert_leaf(plan, out_end, n, value);
    if (probe) probe->converted(out_end - n, n, result.overlap);
    return result;
}

/// The fraction of value x R^split to n words of the radix, in storage cut from the buffer.
template <typename wtype>
auto CBRv2<wtype>::fraction(const MultiplyContext& ctx, AlignedBufferC& buffer, upL_t index, upL_t n,
                            const Number& value) const -> Number {
    const PowerRow<wtype>& sizes = plan.rows[index];
    const auto& row = table.row(index);
    Number result(buffer.spawn_words<wtype>(sizes.result_words), sizes.result_words);
    if (sizes.direct) {
        RemainderFloatB<wtype>::set_direct(result, value, row.words);
        return result;
    }
    const TransformHelper<wtype> helper(ctx.with_scratch(buffer), *row.product, 1);
    const upL_t words = plan.fraction_words(n);
    if (sizes.image_kept)
        RemainderFloatB<wtype>::set_inverse_fmul(helper, result, value, row.form, words);
    else
        RemainderFloatB<wtype>::set_mul_small(helper, result, value, table.last_power(), words);
    return result;
}

template <typename wtype>
auto CBRv2<wtype>::shorten(const Number& value, upL_t n) const -> Number {
    return words_between(value, -static_cast<spL_t>(plan.fraction_words(n)), 0);
}

/// The two halves come from different computations and must agree on the word that they share.
template <typename wtype>
auto CBRv2<wtype>::join(const char* location, wtype* out_end, upL_t n, upL_t s, Result top, Result low) const
    -> Result {
    const wtype v = top.overlap;
    const wtype u = *(out_end - s - 1);
    const wtype R = plan.radix;
    const wtype distance = static_cast<wtype>(v > u ? v - u : u - v);
    Result result{low.overlap, top.carry};
    if (distance <= 1) return result;
    if (distance != R - 1)
        throw AlgorithmFailedException(location, "Overlap Mismatch:\n     RL = " + std::to_string(n) +
                                                     "\n     Expected = " + std::to_string(u) +
                                                     "\n     Actual   = " + std::to_string(v));
    result.carry += fixup(out_end - s, s, u == 0 ? 1 : -1);
    return result;
}

/// Adds a carry of one, or takes a borrow of one, at the lowest of the words. Returns what leaves the top.
template <typename wtype>
int CBRv2<wtype>::fixup(wtype* words, upL_t count, int carry) const {
    const wtype largest = static_cast<wtype>(plan.radix - 1);
    const wtype turning = carry > 0 ? largest : wtype(0);
    const wtype turned = carry > 0 ? wtype(0) : largest;
    for (upL_t i = 0; i < count; i++) {
        if (words[i] != turning) {
            words[i] = static_cast<wtype>(carry > 0 ? words[i] + 1 : words[i] - 1);
            return 0;
        }
        words[i] = turned;
    }
    return carry;
}

template class CBRv2<std::uint32_t>;
template class CBRv2<std::uint64_t>;

}  // namespace lumo
