#include "lumo/series/reduced_series.h"

#include <algorithm>

#include "lumo/series/bsr_objects.h"

namespace lumo {
namespace {

/// About 2,500 terms of the series of Pi fill it. Rows of 90,000 to 800,000 bits cost much the same.
constexpr upL_t RING_BITS = 262144;
/// So many terms a task pay for the inverse, a millisecond of work.
constexpr upL_t LEAST_TERMS = 98304;
constexpr upL_t TERMS_STEP = 64;
/// Ranges of up to 100 terms are cut in the middle.
constexpr upL_t LEAST_STEPS = 2;

/// What pieces of so many terms have in common; the first one lacks the term 0.
template <typename wtype>
CommonFactor<wtype> common_factor(const SeriesCommonP2B3<wtype>& series, upL_t terms, const FftSize& ring) {
    return CommonFactor<wtype>(terms - 2, series.common_power(), ring);
}

/// The most terms whose quotients fit the ring.
template <typename wtype>
upL_t fitting_terms(const SeriesCommonP2B3<wtype>& series, upL_t end, const FftSize& ring) {
    // The highest word of the ring stays free.
    const upL_t room = ring.limit_bits / WordTraits<wtype>::bits - 1;
    // Less than half of a run is removed.
    upL_t least = LEAST_STEPS;
    upL_t beyond = std::max(least, 2 * room / series.result_words(end - TERMS_STEP, end)) + 1;
    while (beyond - least > 1) {
        const upL_t steps = least + (beyond - least) / 2, terms = steps * TERMS_STEP;
        const CommonFactor<wtype> common = common_factor(series, terms, ring);
        const auto removed = static_cast<upL_t>(common.size() / word_size<wtype>().hi);
        (series.result_words(end - terms, end) - removed > room ? beyond : least) = steps;
    }
    return least * TERMS_STEP;
}

}  // namespace

template <typename wtype>
bool ReducedSeries<wtype>::worthwhile(const SeriesCommonP2B3<wtype>& series, upL_t end, upL_t tds) {
    return series.common_power() != 0 && end / LEAST_TERMS >= std::max<upL_t>(tds, 1);
}

template <typename wtype>
const FftSize& ReducedSeries<wtype>::default_ring() {
    return fft_size_for(RING_BITS);
}

template <typename wtype>
ReducedSeries<wtype>::ReducedSeries(const SeriesCommonP2B3<wtype>& inner, upL_t end, const FftSize& ring)
    : ReducedSeries(inner, end, ring, fitting_terms(inner, end, ring)) {}

template <typename wtype>
ReducedSeries<wtype>::ReducedSeries(const SeriesCommonP2B3<wtype>& inner, upL_t end, const FftSize& ring,
                                    upL_t terms)
    : SeriesCommonP2B3<wtype>(inner), series(inner), common(common_factor(inner, terms, ring)) {
    this->grid_terms = terms;
    this->cut_words = inner.result_words(end - terms, end);
    this->join_bytes = common.merge_bytes();
}

template <typename wtype>
upL_t ReducedSeries<wtype>::pieces(upL_t a, upL_t b) const {
    const upL_t first = a <= 1 ? 0 : (a + this->grid_terms - 1) / this->grid_terms;
    return std::max(first, b / this->grid_terms) - first;
}

template <typename wtype>
DoubleDouble ReducedSeries<wtype>::block_size(upL_t a, upL_t b) const {
    return series.block_size(a, b) - DoubleDouble::from_count(pieces(a, b)) * DoubleDouble(common.size());
}

template <typename wtype>
bool ReducedSeries<wtype>::join(const MultiplyContext& ctx, upL_t a, upL_t b, Parts<wtype>& left,
                                const Parts<wtype>& right, const ExactFloat<wtype>& T) const {
    if (b - a > this->grid_terms || pieces(a, b) == 0) return false;
    common.merge(ctx, left, right, T);
    return true;
}

template class ReducedSeries<std::uint32_t>;
template class ReducedSeries<std::uint64_t>;

}  // namespace lumo
