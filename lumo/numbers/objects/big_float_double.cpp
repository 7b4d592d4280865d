#include <bit>
#include <cmath>

#include "lumo/numbers/objects/big_float.h"

namespace lumo {

template <typename wtype>
void BigFloat<wtype>::set_double(double x, spL_t e) {
    clear();
    const auto bits = std::bit_cast<std::uint64_t>(x);
    const auto biased = static_cast<int>(bits >> 52 & 0x7ff);
    std::uint64_t mantissa = bits & ((std::uint64_t(1) << 52) - 1);
    if (biased != 0) mantissa |= std::uint64_t(1) << 52;
    if (mantissa == 0) return;

    constexpr upL_t words = 8 / sizeof(wtype);
    require_capacity("BigFloat::set_double()", capacity, words + 1);
    for (; mantissa != 0; L++) {
        T[L] = static_cast<wtype>(mantissa);
        mantissa = words == 1 ? 0 : mantissa >> 32;
    }
    exp = e;
    positive = bits >> 63 == 0;
    mp2((biased != 0 ? biased : 1) - 1075);  // a subnormal has the exponent of the smallest normal number
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

template struct BigFloat<std::uint32_t>;
template struct BigFloat<std::uint64_t>;

}  // namespace lumo
