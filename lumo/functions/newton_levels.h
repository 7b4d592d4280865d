/// The frames of iterations that double their precision level by level: a step leaves the distance from its
/// approximation R in S and may use T's storage for it.
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/functions/function_plan.h"
#include "lumo/functions/newton_step.h"
#include "lumo/functions/plan_sizes.h"

namespace lumo {

/// From this precision on, iterations use transforms.
inline constexpr upL_t NEWTON_END_PRECISION = 10;

/// Sizes of a plan whose steps need `guard` words beyond their precision, and transforms for products of
/// `product_length` words.
template <typename wtype>
void newton_sizes(FunctionPlan& plan, const FunctionPlan& end, upL_t guard, upL_t product_length) {
    const upL_t h = plan.p >> 1;
    plan.output_words = std::max(plan.p + 2 * WordTraits<wtype>::align_words + guard, end.output_words);
    plan.word_scratch =
        std::max(aligned_room<wtype>(h + guard) + aligned_room<wtype>(h + 2), end.word_scratch);
    plan.byte_scratch = std::max(product_bytes<wtype>(product_length, plan.tds), end.byte_scratch);
}

/// The plain form, for precisions up to NEWTON_END_PRECISION. T := the limit at p words. `seed(T)` gives it
/// for p = 0; `correction(S, T, R, p, q)` is the step from q words. T's capacity must be p + guard, else
/// BufferTooSmallException at `location`.
template <typename wtype, typename Seed, typename Correction>
void newton_end(const char* location, upL_t guard, BigFloat<wtype>& T, upL_t p, wtype* words,
                upL_t word_count, const Seed& seed, const Correction& correction) {
    if (p == 0) return seed(T);
    require_capacity(location, T.capacity, p + guard);
    const upL_t q = NewtonStep<wtype>::child_precision(p);
    newton_end(location, guard, T, q, words, word_count, seed, correction);
    LinearWordBuffer<wtype> buffer(words, word_count);
    BigFloat<wtype> R(buffer.cut_from_bottom(q + 3), q + 3);
    BigFloat<wtype> S(buffer.data(), buffer.size());
    R.set_BigFloat(q, T);
    const Estimate estimate = correction(S, T, R, p, q);
    NewtonStep<wtype>::correct({}, T, p, R, S, estimate);
}

/// The same in one output's worth of memory: R of a level stands in the words, while the storage of T is the
/// scratch of the level below. `end(T, p, words, word_count)` is the plain form; `correction(S, T, R, p)` is
/// the step from (p >> 1) + 1 words.
template <typename wtype, typename End, typename Correction>
void newton_levels(const char* location, upL_t guard, const MultiplyContext& ctx, StatusNode& status,
                   BigFloat<wtype>& T, upL_t p, wtype* words, upL_t word_count, const End& end,
                   const Correction& correction) {
    if (p < NEWTON_END_PRECISION) {
        end(T, p, words, word_count);
        return;
    }
    require_capacity(location, T.capacity, p + guard);
    const upL_t h = p >> 1;
    const StatusSection level(status, {{'G', ""}});
    BigFloat<wtype> R(words, word_count);
    newton_levels(location, guard, ctx, status, R, h + 1, T.base, T.capacity, end, correction);
    R.truncate(h + 1);
    const upL_t S_words = aligned_room<wtype>(h + 2);
    BigFloat<wtype> S(NewtonStep<wtype>::room_above(R).cut_from_bottom(S_words), S_words);
    const Estimate estimate = correction(S, T, R, p);
    NewtonStep<wtype>::correct(ctx.parallel(), T, p, R, S, estimate);
}

/// The run() of a plan with a plain form `end`: T := f(x) to p words, by steps
/// `correction(ctx, status, S, T, x, R, p)`.
template <typename Plan, typename wtype, typename X, typename Correction>
void newton_run(const char* location, upL_t guard, const Plan& plan, const MultiplyContext& ctx,
                StatusNode& status, BigFloat<wtype>& T, const X& x, upL_t p, wtype* words, upL_t word_count,
                const Correction& correction) {
    NewtonStep<wtype>::require_plan(location, ctx.tds, plan.tds, p, plan.p);
    newton_levels(
        location, guard, ctx, status, T, p, words, word_count,
        [&](BigFloat<wtype>& R, upL_t q, wtype* free, upL_t count) {
            plan.end.run(ctx, R, x, q, free, count);
        },
        [&](BigFloat<wtype>& S, BigFloat<wtype>& E, const BigFloat<wtype>& R, upL_t q) {
            return correction(ctx, status, S, E, x, R, q);
        });
}

}  // namespace lumo
