/// Ranges of a series by the recurrence itself in GMP integers, and by the engine in buffers of the planned
/// sizes.
#pragma once

#include <gtest/gtest.h>

#include "gmp_words.h"
#include "lumo/foundation/status/status_node.h"
#include "lumo/multiply/multiply.h"
#include "lumo/series/bsr_block_b.h"
#include "pool_context.h"
#include "scratch.h"

namespace lumo::testing {

struct Exact {
    mpz_class P, Q, R;
};

/// The recurrence itself, in GMP integers.
template <typename wtype>
Exact exact_sum(const SeriesCommonP2B3<wtype>& series, upL_t a, upL_t b) {
    if (b - a == 1) {
        LeafTerm<wtype> t;
        series.term(t, a);
        const bool with_R = !series.hyperdescent;
        Exact leaf{to_mpz(t.P, t.PL), to_mpz(t.Q, t.QL), with_R ? to_mpz(t.R, t.RL) : mpz_class(1)};
        if (!t.P_positive) leaf.P = -leaf.P;
        if (with_R && !t.R_positive) leaf.R = -leaf.R;
        return leaf;
    }
    const upL_t m = a + (b - a) / 3 + 1;
    const Exact left = exact_sum(series, a, m < b ? m : b - 1);
    const Exact right = exact_sum(series, m < b ? m : b - 1, b);
    return {left.P * right.Q + left.R * right.P, left.Q * right.Q, left.R * right.R};
}

/// Buffers of exactly the planned sizes.
template <typename wtype, typename Block = BSR_BlockB<wtype>>
class BlockRun {
 public:
    template <typename Series>
    BlockRun(const Series& series, Region range, upL_t tds, upL_t levels, bool need_R,
             BasicParallelizer& parallelizer)
        : plan(series, range, tds, levels),
          words(4 * plan.result_words * sizeof(wtype)),
          scratch(plan.byte_scratch) {
        const auto object = [&](upL_t i) {
            return ExactFloat<wtype>(words.words<wtype>() + i * plan.result_words, plan.result_words);
        };
        parts = {object(0), object(1), object(2), need_R};
        Multiply::ensure_tables(2 * plan.result_words * WordTraits<wtype>::bits);
        NullStatusNode status;
        plan.run(scratch.context(tds, parallelizer), status, parts, object(3));
        EXPECT_TRUE(words.intact() && scratch.intact());
    }
    /// Whether the parts that were asked for are these, with their hashes.
    bool gives(const Exact& exact) const {
        const auto is = [](const ExactFloat<wtype>& part, const mpz_class& value) {
            return integer_value<wtype>(part) == value && part.hash_error() == 0;
        };
        return is(parts.P, exact.P) && is(parts.Q, exact.Q) && (!parts.need_R || is(parts.R, exact.R));
    }
    Parts<wtype> parts;

 private:
    Block plan;
    Scratch words, scratch;
};

}  // namespace lumo::testing
