/// Ranges of a series by the recurrence itself in GMP integers, and by the engine in buffers of the planned
/// sizes.
#pragma once

#include "gmp_words.h"
#include "lumo/foundation/status/status_node.h"
#include "lumo/multiply/multiply.h"
#include "lumo/series/bsr_block_b.h"

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
        Exact leaf{to_mpz(t.P, t.PL), to_mpz(t.Q, t.QL), 1};
        if (series.hyperdescent) {
            if (!t.P_positive) leaf.P = -leaf.P;
            return leaf;
        }
        leaf.R = to_mpz(t.R, t.RL);
        if (!t.P_positive) leaf.P = -leaf.P;
        if (!t.R_positive) leaf.R = -leaf.R;
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
          words(align_words<wtype>(4 * plan.result_words) + 32),
          bytes(plan.byte_scratch / 8 + 32) {
        wtype* start = words.data() + bp_prefix(words.data());
        const auto object = [&](int i) {
            return ExactFloat<wtype>(start + i * plan.result_words, plan.result_words);
        };
        parts = {object(0), object(1), object(2), need_R};
        std::uint64_t* scratch = bytes.data() + bp_prefix(bytes.data());
        Multiply::ensure_tables(2 * plan.result_words * WordTraits<wtype>::bits);
        const MultiplyContext ctx{tds, &parallelizer, 0, 0, scratch, plan.byte_scratch};
        NullStatusNode status;
        plan.run(ctx, status, parts, object(3));
    }
    Parts<wtype> parts;

 private:
    Block plan;
    std::vector<wtype> words;
    std::vector<std::uint64_t> bytes;
};

}  // namespace lumo::testing
