/// The recursion of a conversion over its table of powers.
#pragma once

#include <memory>

#include "lumo/radix/cbrv2/power_table.h"

namespace lumo {

template <typename wtype>
class CBRv2 {
 public:
    using Number = BigFloat<wtype>;

    CBRv2(const ConvertPlanP<wtype>& plan_, const PowerTable<wtype>& table_, ConversionProbe<wtype>* probe_)
        : plan(plan_), table(table_), probe(probe_) {}

    /// What a node hands up: its overlap word, and what its words would have carried above their top, which
    /// they stand short of by R^length.
    struct Result {
        wtype overlap = 0;
        int carry = 0;
    };

    /// out_end[-n .. 0) := the words of a positive fraction, whose levels from plan.parallel_length up are
    /// told to `progress` (n words in all) and run with ctx.tds: their two halves side by side, on words and
    /// scratch of their own. ctx.scratch holds node_bytes of the row.
    Result convert_T(StatusIteration& progress, const MultiplyContext& ctx, wtype* out_end, upL_t n,
                     upL_t level, const Number& value) const;
    /// The same in the caller's thread.
    Result convert_L(const MultiplyContext& ctx, wtype* out_end, upL_t n, upL_t level,
                     const Number& value) const;

 private:
    const ConvertPlanP<wtype>& plan;
    const PowerTable<wtype>& table;
    ConversionProbe<wtype>* const probe;

    Result leaf(wtype* out_end, upL_t n, const Number& value) const;
    Number fraction(const MultiplyContext& ctx, AlignedBufferC& buffer, upL_t row, upL_t n,
                    const Number& value) const;
    /// The words that n words of the radix depend on.
    Number shorten(const Number& value, upL_t n) const;
    Result join(const char* location, wtype* out_end, upL_t n, upL_t s, Result top, Result low) const;
    int fixup(wtype* words, upL_t count, int carry) const;
};

}  // namespace lumo
