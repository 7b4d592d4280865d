/// The powers of a ratio's root that the ranges of one block share.
#pragma once

#include <array>

#include "lumo/multiply/multiply_context.h"
#include "lumo/series/binary_bbp/binary_bbp.h"

namespace lumo {

/// Terms of the right part of a range that is cut in two. Ranges of one level of a block then differ by one
/// term at most, and so do their right parts.
inline upL_t right_terms(upL_t terms) {
    return terms - terms / 2;
}

template <typename wtype>
class PowerTable {
 public:
    /// For a block of `terms` terms whose ranges of fewer than `series.leaf_terms` terms are leaves. The
    /// powers stand in `storage`, of which storage_words() are used. ctx.scratch holds what multiply() needs
    /// for products of series.power_words(terms).
    PowerTable(const MultiplyContext& ctx, const BinaryBBP<wtype>& series, upL_t terms,
               const ExactFloat<wtype>& storage);
    static upL_t storage_words(const BinaryBBP<wtype>& series, upL_t terms);

    /// T := A r^n for the right part of any range of the block, of n terms; T overlaps neither A nor the
    /// table.
    void scale(const MultiplyContext& ctx, ExactFloat<wtype>& T, const ExactFloat<wtype>& A, upL_t n) const;
    /// Words that scale() needs beyond A's.
    upL_t scale_words(upL_t n) const { return series.power_words(n) + 4; }
    /// T := root^(power terms) of the whole block.
    void whole_power(const MultiplyContext& ctx, ExactFloat<wtype>& T) const;

 private:
    struct Entry {
        upL_t terms = 0;
        ExactFloat<wtype> power;
    };
    void multiply_by_root(const MultiplyContext& ctx, ExactFloat<wtype>& T, upL_t times) const;
    const Entry& find(upL_t n) const;

    const BinaryBBP<wtype>& series;
    upL_t terms;
    std::array<Entry, 64> entries;  ///< of the top level first, each of half the terms of the one before
    upL_t count = 0;
};

}  // namespace lumo
