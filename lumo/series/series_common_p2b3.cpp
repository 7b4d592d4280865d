#include "lumo/series/series_common_p2b3.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "lumo/series/bsr_end.h"

namespace lumo {

namespace {

/// Ranges of up to so many terms, that begin at least so many times their length from the first one.
constexpr upL_t EVEN_TERMS = 999;
constexpr upL_t EVEN_TERMS_APART = 16;

}  // namespace

template <typename wtype>
DoubleDouble word_size() {
    static const DoubleDouble size =
        DoubleDouble::parse(sizeof(wtype) == 8 ? "44.36141955583649980270285577332330035683"
                                               : "22.18070977791824990135142788666165017842");
    return size;
}

template <typename wtype>
upL_t size_to_words(DoubleDouble size) {
    return (size / word_size<wtype>()).truncate() + 1;
}

template <typename wtype>
DoubleDouble words_to_size(upL_t words) {
    return DoubleDouble::from_count(words) * word_size<wtype>();
}

long double log_gamma(long double x) {
    constexpr long double HALF_LOG_2PI = 0.918938533204672741780329736405617640L;
    const long double inverse = 1 / x;
    return (x - 0.5L) * std::log(x) - x + HALF_LOG_2PI + inverse / 12 - inverse * inverse * inverse / 360;
}

template <typename wtype>
void SeriesCommonP2B3<wtype>::end(upL_t a, upL_t b, Parts<wtype>& out) const {
    bsr_end(*this, Region(a, b), out);
}

template <typename wtype>
upL_t SeriesCommonP2B3<wtype>::result_words(upL_t a, upL_t b) const {
    return size_to_words<wtype>(block_size(a, b)) + 1 + excess_bits / WordTraits<wtype>::bits;
}

template <typename wtype>
upL_t SeriesCommonP2B3<wtype>::recursion_words(upL_t terms) const {
    // Each level rounds the left part's end up to the alignment unit, and two bounds for one.
    constexpr upL_t LEVEL_WORDS = WordTraits<wtype>::align_words + 8;
    return std::max(overhead_words, LEVEL_WORDS) * static_cast<upL_t>(std::bit_width(terms)) + cut_words;
}

template <typename wtype>
upL_t SeriesCommonP2B3<wtype>::words(upL_t a, upL_t b) const {
    return result_words(a, b) + recursion_words(b - a);
}

template <typename wtype>
upL_t SeriesCommonP2B3<wtype>::half_words(upL_t words) const {
    return words / 2 + std::min(words / 2, cut_words) + overhead_words;
}

template <typename wtype>
upL_t SeriesCommonP2B3<wtype>::split(upL_t a, upL_t b) const {
    if (b - a < 2) return b;
    // Terms far from the start are of about one size, and a bisection takes as long as their leaves.
    const bool on_grid = grid_terms != 0 && b - a > grid_terms;
    if (!on_grid && b - a <= EVEN_TERMS && (b - a) * EVEN_TERMS_APART <= a) return a + (b - a) / 2;
    // Without its last term a whole piece still has the size that its halves have together.
    const DoubleDouble target = block_size(a, on_grid ? b : b - 1) * DoubleDouble(0.5);
    upL_t lo = a;
    upL_t hi = b;
    while (hi - lo >= 2) {
        const upL_t m = lo + (hi - lo) / 2;
        (target > block_size(a, m) ? lo : hi) = m;
    }
    if (!on_grid) return hi == b ? b - 1 : hi;
    const upL_t near = (hi + grid_terms / 2) / grid_terms * grid_terms;
    return near <= a ? near + grid_terms : near >= b ? (b - 1) / grid_terms * grid_terms : near;
}

template <typename wtype>
DoubleDouble SeriesCommonP2B3<wtype>::remaining(upL_t k, upL_t end) const {
    return DoubleDouble::from_count(end > k ? end - k : 0) * rates.converge;
}

template <typename wtype>
upL_t SeriesCommonP2B3<wtype>::terms_for(DoubleDouble size) const {
    return (size / rates.converge + DoubleDouble(1.5)).truncate();
}

#define LUMO_INSTANTIATE(wtype)                        \
    template DoubleDouble word_size<wtype>();          \
    template upL_t size_to_words<wtype>(DoubleDouble); \
    template DoubleDouble words_to_size<wtype>(upL_t); \
    template class SeriesCommonP2B3<wtype>;
LUMO_INSTANTIATE(std::uint32_t)
LUMO_INSTANTIATE(std::uint64_t)
#undef LUMO_INSTANTIATE

}  // namespace lumo
