#include "lumo/series/binary_bbp/power_table.h"

#include <algorithm>

#include "lumo/foundation/errors/fatal.h"
#include "lumo/series/merge_products.h"

namespace lumo {
namespace {

/// Levels at which ranges are cut: as long as the longest range of a level is no leaf.
template <typename wtype>
upL_t levels_of(const BinaryBBP<wtype>& series, upL_t terms) {
    upL_t levels = 0;
    for (upL_t longest = terms; longest > 1 && longest >= series.leaf_terms; longest = right_terms(longest))
        ++levels;
    return levels;
}

template <typename wtype>
upL_t entry_words(const BinaryBBP<wtype>& series, upL_t terms) {
    return align_words<wtype>(series.power_words(terms) + 4);
}

template <typename wtype>
void set_one(ExactFloat<wtype>& T) {
    wtype one = 1;
    T.clear();
    T.T = T.base;
    require_capacity("PowerTable::PowerTable()", T.capacity, 1);
    *T.T = one;
    T.L = 1;
    T.update_hash();
}

}  // namespace

template <typename wtype>
upL_t PowerTable<wtype>::storage_words(const BinaryBBP<wtype>& series, upL_t terms) {
    upL_t words = 0;
    for (upL_t i = 1, levels = levels_of(series, terms); i <= levels; ++i)
        words += entry_words(series, terms >> i);
    return words;
}

template <typename wtype>
PowerTable<wtype>::PowerTable(const MultiplyContext& ctx, const BinaryBBP<wtype>& series_, upL_t terms_,
                              const ExactFloat<wtype>& storage)
    : series(series_), terms(terms_) {
    if (series.ratio.root == 1) return;
    require_capacity("PowerTable::PowerTable()", storage.capacity, storage_words(series, terms));
    count = levels_of(series, terms);
    wtype* words = storage.base;
    for (upL_t i = 0; i < count; ++i) {
        entries[i].terms = terms >> (i + 1);
        const upL_t capacity = entry_words(series, entries[i].terms);
        entries[i].power = ExactFloat<wtype>(words, capacity);
        words += capacity;
    }
    for (upL_t i = count; i-- != 0;) {
        ExactFloat<wtype>& power = entries[i].power;
        upL_t have = 0;
        if (i + 1 == count) {
            set_one(power);
        } else {
            have = 2 * entries[i + 1].terms;
            multiply(ctx, power, entries[i + 1].power, entries[i + 1].power);
        }
        multiply_by_root(ctx, power, entries[i].terms - have);
    }
}

template <typename wtype>
void PowerTable<wtype>::multiply_by_root(const MultiplyContext& ctx, ExactFloat<wtype>& T,
                                         upL_t times) const {
    for (upL_t i = 0; i < times * series.ratio.power; ++i) T.muladd_uW(series.ratio.root, 0, ctx.parallel());
}

template <typename wtype>
const typename PowerTable<wtype>::Entry& PowerTable<wtype>::find(upL_t n) const {
    const auto* const found = std::find_if(entries.data(), entries.data() + count, [n](const Entry& entry) {
        return entry.terms == n || entry.terms + 1 == n;
    });
    require(found != entries.data() + count, "A range has no power of its length.", "PowerTable::scale()");
    return *found;
}

template <typename wtype>
void PowerTable<wtype>::scale(const MultiplyContext& ctx, ExactFloat<wtype>& T, const ExactFloat<wtype>& A,
                              upL_t n) const {
    if (series.ratio.root == 1) {
        T.set_ExactFloat(A, ctx.parallel());
    } else {
        const Entry& entry = find(n);
        multiply(ctx, T, A, entry.power);
        multiply_by_root(ctx, T, n - entry.terms);
    }
    T.mp2(static_cast<spL_t>(series.ratio.shift * n));
}

template <typename wtype>
void PowerTable<wtype>::whole_power(const MultiplyContext& ctx, ExactFloat<wtype>& T) const {
    set_one(T);
    upL_t have = 0;
    if (count != 0) {
        have = 2 * entries[0].terms;
        multiply(ctx, T, entries[0].power, entries[0].power);
    }
    if (series.ratio.root != 1) multiply_by_root(ctx, T, terms - have);
}

template class PowerTable<std::uint32_t>;
template class PowerTable<std::uint64_t>;

}  // namespace lumo
