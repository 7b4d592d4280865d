#include "lumo/functions/inverse_nth_root.h"

#include "lumo/functions/newton_levels.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "InvNthRootFloat_BigFloatR::run()";

/// R of a level, and storage for half a number.
template <typename wtype>
struct LevelWords {
    upL_t q, A, B;
    explicit LevelWords(upL_t p)
        : q((p >> 1) + 3), A(align_words<wtype>(q + 4)), B(aligned_room<wtype>(q + 4)) {}
};

}  // namespace

template <typename wtype>
InvNthRootFloat_BigFloatR<wtype>::InvNthRootFloat_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), end(std::min(p_, NEWTON_END_PRECISION), tds_), step(p_, tds_) {
    const LevelWords<wtype> level(p);
    const LevelWords<wtype> below(level.q);
    word_scratch = std::max(level.A + level.B, end.word_scratch);
    byte_scratch = std::max(step.byte_scratch, end.byte_scratch);
    // A level finds its scratch in the storage of the result above it.
    output_words =
        std::max({p + 2 * WordTraits<wtype>::align_words + 4, below.A + below.B, end.word_scratch});
}

template <typename wtype>
void InvNthRootFloat_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                           const BigFloat<wtype>& x, std::uint32_t n, upL_t precision,
                                           wtype* words, upL_t word_count) const {
    NewtonStep<wtype>::require_plan(LOCATION, ctx.tds, tds, precision, p);
    iterate(ctx, status, T, x, n, precision, words, word_count);
}

template <typename wtype>
void InvNthRootFloat_BigFloatR<wtype>::iterate(const MultiplyContext& ctx, StatusNode& status,
                                               BigFloat<wtype>& T, const BigFloat<wtype>& x, std::uint32_t n,
                                               upL_t precision, wtype* words, upL_t word_count) const {
    if (precision < NEWTON_END_PRECISION) {
        end.run(ctx, T, x, n, precision, words, word_count);
        return;
    }
    require_capacity(LOCATION, T.capacity, precision + 4);
    const LevelWords<wtype> level(precision);
    const StatusSection section(status, {{'G', ""}});
    BigFloat<wtype> R(words, word_count);
    iterate(ctx, status, R, x, n, level.q, T.base, T.capacity);
    R.truncate(level.q);
    BigFloat<wtype> B(NewtonStep<wtype>::room_above(R).cut_from_bottom(level.B), level.B);
    if (n % 2 == 1)
        step.run_expanded(ctx, status, T, x, n, precision, R, B);
    else
        step.run_factored(ctx, status, T, x, n, precision, R, B);
}

template struct InvNthRootFloat_BigFloatR<std::uint32_t>;
template struct InvNthRootFloat_BigFloatR<std::uint64_t>;

}  // namespace lumo
