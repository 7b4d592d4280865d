/// What merges are made of: products that may stand on their operands, and pairs of them side by side.
#pragma once

#include "lumo/series/shared_factor.h"

namespace lumo {

/// An exponent that no product lies above.
inline constexpr spL_t ANYWHERE = INT64_MAX;

/// T := A B; T may share A's storage, and beyond small_words() B's. The product reaches down to `bottom`
/// where it would lie above it. ctx.scratch holds what SharedFactor needs, for short products room for one of
/// them on top of its own scratch.
template <typename wtype>
void multiply(const MultiplyContext& ctx, ExactFloat<wtype>& T, const ExactFloat<wtype>& A,
              const ExactFloat<wtype>& B, spL_t bottom = ANYWHERE) {
    if (A.L + B.L + 8 > small_words<wtype>()) {
        const SharedFactor<wtype> factor(ctx, B, A.L);
        factor.multiply(T, A, bottom);
        return;
    }
    const bool shared = A.T >= T.base && A.T < T.base + T.capacity;
    if (!shared) {
        T.set_mul_extend(ctx, A, B, bottom);
        return;
    }
    AlignedBufferC buffer = ctx.buffer();
    const upL_t words = align_words<wtype>(SMALL_WORDS<wtype> + 16);
    ExactFloat<wtype> U(buffer.spawn_words<wtype>(words), words);
    U.set_mul(ctx.with_scratch(buffer), A, B);
    if (U.exp <= bottom) {
        T.set_ExactFloat(U);
        return;
    }
    // The zeros below take no room on the stack of the product.
    const auto zeros = static_cast<upL_t>(U.exp - bottom);
    require_capacity("multiply()", T.capacity, zeros + U.L);
    bp_zero(T.base, zeros);
    bp_copy(T.base + zeros, U.T, U.L);
    T.T = T.base;
    T.L = zeros + U.L;
    T.exp = bottom;
    T.positive = U.positive;
    T.hash = U.hash;
}

/// Runs the two with a share of the threads and of the scratch each, or one after the other.
template <typename First, typename Second>
void both(const MultiplyContext& ctx, bool side_by_side, First first, Second second) {
    if (ctx.tds < 2 || !side_by_side) {
        first(ctx);
        second(ctx);
        return;
    }
    const auto [low, high] = ctx.buffer().halves();
    MultiplyContext one = ctx.with_scratch(low);
    MultiplyContext two = ctx.with_scratch(high);
    one.tds = ctx.tds / 2;
    two.tds = ctx.tds - ctx.tds / 2;
    parallel_invoke(
        *ctx.parallelizer, [&] { first(one); }, [&] { second(two); });
}

}  // namespace lumo
