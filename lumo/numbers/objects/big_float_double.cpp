#include <algorithm>
#include <bit>
#include <cmath>

#include "lumo/numbers/objects/big_float.h"

namespace lumo {

namespace {

/// A finite double as a whole number times 2^exponent.
struct TakenApart {
    std::uint64_t mantissa;
    int exponent;
    bool positive;
    explicit TakenApart(double x) {
        const auto bits = std::bit_cast<std::uint64_t>(x);
        const auto biased = static_cast<int>(bits >> 52 & 0x7ff);
        mantissa = bits & ((std::uint64_t(1) << 52) - 1);
        if (biased != 0) mantissa |= std::uint64_t(1) << 52;
        exponent = (biased != 0 ? biased : 1) - 1075;  // a subnormal has that of the smallest normal number
        positive = bits >> 63 == 0;
    }
};

}  // namespace

/// T := magnitude 2^(W e + bits).
template <typename wtype>
void BigFloat<wtype>::set_scaled(const char* location, unsigned __int128 magnitude, spL_t e, int bits,
                                 bool is_positive) {
    clear();
    if (magnitude == 0) return;
    for (; magnitude != 0; magnitude >>= WordTraits<wtype>::bits) {
        require_capacity(location, capacity, L + 2);
        T[L++] = static_cast<wtype>(magnitude);
    }
    exp = e;
    positive = is_positive;
    mp2(bits);
}

template <typename wtype>
void BigFloat<wtype>::set_double(double x, spL_t e) {
    const TakenApart value(x);
    set_scaled("BigFloat::set_double()", value.mantissa, e, value.exponent, value.positive);
}

template <typename wtype>
void BigFloat<wtype>::set_double_double(DoubleDouble x, spL_t e) {
    constexpr int below = 74;  // bits kept below the unit of the high half: 127 in all
    const TakenApart high(x.hi), low(x.lo);
    const int distance = high.exponent - low.exponent;
    const int shift = below - distance;
    const unsigned __int128 lower = shift >= 0    ? static_cast<unsigned __int128>(low.mantissa) << shift
                                    : shift > -64 ? low.mantissa >> -shift
                                                  : 0;
    const unsigned __int128 upper = static_cast<unsigned __int128>(high.mantissa) << below;
    set_scaled("BigFloat::set_double_double()", high.positive == low.positive ? upper + lower : upper - lower,
               e, high.exponent - below, high.positive);
}

template <typename wtype>
double BigFloat<wtype>::get_double(spL_t& e) const {
    e = top();
    constexpr double unit = sizeof(wtype) == 4 ? 0x1p-32 : 0x1p-64;
    double scale = 1, value = 0;
    for (upL_t i = 0; i < 3 && i < L; i++) {
        scale *= unit;
        value = std::fma(static_cast<double>(T[L - 1 - i]), scale, value);
    }
    return positive ? value : -value;
}

template <typename wtype>
DoubleDouble BigFloat<wtype>::get_double_double(spL_t& e) const {
    e = top();
    DoubleDouble value;
    for (upL_t i = std::min<upL_t>(L, 5); i > 0; i--) {
        const DoubleDouble word = DoubleDouble::from_count(T[L - i]);
        const int scale = -static_cast<int>(i * WordTraits<wtype>::bits);
        value = value + DoubleDouble(std::ldexp(word.hi, scale), std::ldexp(word.lo, scale));
    }
    return positive ? value : -value;
}

template struct BigFloat<std::uint32_t>;
template struct BigFloat<std::uint64_t>;

}  // namespace lumo
