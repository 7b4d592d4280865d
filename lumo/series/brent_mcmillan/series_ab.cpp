#include "lumo/series/brent_mcmillan/series_ab.h"

#include <algorithm>
#include <cmath>

namespace lumo {
namespace {

long double log_product(upL_t a, upL_t b) {
    return log_gamma(static_cast<long double>(b)) - log_gamma(static_cast<long double>(a));
}

DoubleDouble as_pair(long double x) {
    const auto high = static_cast<double>(x);
    return {high, static_cast<double>(x - static_cast<long double>(high))};
}

long double as_long(DoubleDouble x) {
    return static_cast<long double>(x.hi) + static_cast<long double>(x.lo);
}

}  // namespace

template <typename wtype>
SeriesBrentMcMillanAB<wtype>::SeriesBrentMcMillanAB(unsigned k)
    : exponent(k), log_n(k * std::log(2.0L)), n(std::ldexp(1.0L, static_cast<int>(k))) {}

template <typename wtype>
DoubleDouble SeriesBrentMcMillanAB<wtype>::log_D(upL_t a, upL_t b) const {
    return as_pair(log_product(a, b));
}

template <typename wtype>
long double SeriesBrentMcMillanAB<wtype>::growth(upL_t a, upL_t b) const {
    // The products grow up to the term n.
    const upL_t last = std::clamp((upL_t(1) << exponent) + 1, a, b);
    return std::max(0.0L, 2 * (static_cast<long double>(last - a) * log_n - log_product(a, last)));
}

template <typename wtype>
DoubleDouble SeriesBrentMcMillanAB<wtype>::block_size(upL_t a, upL_t b) const {
    return as_pair(3 * log_product(a, b) + growth(a, b));
}

template <typename wtype>
upL_t SeriesBrentMcMillanAB<wtype>::words(long double size, upL_t a, upL_t b) const {
    // Sums of as many terms as the range has, of sums of as many.
    const long double sums = 2 * std::log(static_cast<long double>(b - a));
    return size_to_words<wtype>(as_pair(std::max(size, 0.0L) + sums)) + 2;
}

template <typename wtype>
upL_t SeriesBrentMcMillanAB<wtype>::D_words(upL_t a, upL_t b) const {
    return words(log_product(a, b), a, b);
}

template <typename wtype>
upL_t SeriesBrentMcMillanAB<wtype>::C_words(upL_t a, upL_t b) const {
    return words(log_product(a, b), a, b);
}

template <typename wtype>
upL_t SeriesBrentMcMillanAB<wtype>::T_words(upL_t a, upL_t b) const {
    // A range beyond n starts with its largest product, n^2 / a^2, as an integer n^2.
    return words(2 * log_product(a, b) + std::max(growth(a, b), 2 * log_n), a, b);
}

template <typename wtype>
upL_t SeriesBrentMcMillanAB<wtype>::V_words(upL_t a, upL_t b) const {
    return words(3 * log_product(a, b) + std::max(growth(a, b), 2 * log_n), a, b);
}

template <typename wtype>
upL_t SeriesBrentMcMillanAB<wtype>::split(upL_t a, upL_t b) const {
    if (b - a <= 100) return a + (b - a) / 2;
    const long double target = log_product(a, b) / 2;
    upL_t lo = a + 1;
    upL_t hi = b - 1;
    while (hi - lo > 1) {
        const upL_t m = lo + (hi - lo) / 2;
        (target > log_product(a, m) ? lo : hi) = m;
    }
    return hi;
}

template <typename wtype>
long double SeriesBrentMcMillanAB<wtype>::weight(upL_t a) const {
    return 2 * (static_cast<long double>(a) * log_n - log_gamma(static_cast<long double>(a) + 1)) - 2 * n;
}

template <typename wtype>
DoubleDouble SeriesBrentMcMillanAB<wtype>::remaining(upL_t a, DoubleDouble size) const {
    if (static_cast<long double>(a) <= n) return size;
    const long double rest = as_long(size) + weight(a);
    return as_pair(std::clamp(rest, 0.0L, as_long(size)));
}

template <typename wtype>
upL_t SeriesBrentMcMillanAB<wtype>::terms_for(DoubleDouble size) const {
    const long double target = as_long(size);
    upL_t lo = upL_t(1) << exponent;
    upL_t hi = 2 * lo;
    while (-weight(hi) < target) hi *= 2;
    while (hi - lo > 1) {
        const upL_t m = lo + (hi - lo) / 2;
        (-weight(m) < target ? lo : hi) = m;
    }
    return hi;
}

template class SeriesBrentMcMillanAB<std::uint32_t>;
template class SeriesBrentMcMillanAB<std::uint64_t>;

}  // namespace lumo
