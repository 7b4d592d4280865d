/// The frame of an iteration that doubles its precision level by level in one output's worth of memory: the
/// approximation R of a level stands in the words, while the storage of T is the scratch of the level below.
#pragma once

#include "lumo/functions/newton_step.h"
#include "lumo/functions/plan_sizes.h"

namespace lumo {

/// From this precision on, iterations use transforms.
inline constexpr upL_t NEWTON_END_PRECISION = 10;

/// T := the limit at p words. `end(T, p, words, word_count)` is the plain form; `correction(S, T, R, p)`
/// leaves the distance from R, which has (p >> 1) + 1 words, in S, and may use T's storage. T's capacity must
/// be p + guard, else BufferTooSmallException at `location`.
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

}  // namespace lumo
