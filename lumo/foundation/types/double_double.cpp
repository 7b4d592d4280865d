#include "lumo/foundation/types/double_double.h"

namespace lumo {

DoubleDouble DoubleDouble::parse(std::string_view text) {
    DoubleDouble value;
    DoubleDouble scale(1);
    bool fraction = false;
    for (const char c : text) {
        if (c == '.') {
            fraction = true;
            continue;
        }
        value = value * DoubleDouble(10) + DoubleDouble(c - '0');
        if (fraction) scale = scale * DoubleDouble(10);
    }
    return value / scale;
}

DoubleDouble exp(DoubleDouble x) {
    constexpr int halvings = 8;
    constexpr int terms = 11;  // (ln 2 / 2^9)^12 / 12! < 2^-140
    const double k = std::nearbyint(x.hi / LN2_PAIR.hi);
    const DoubleDouble r = (x - LN2_PAIR * DoubleDouble(k)) * DoubleDouble(std::ldexp(1.0, -halvings));

    // y = e^r - 1 by its series, then (1 + y)^2 - 1 = y (2 + y) as often as r was halved.
    DoubleDouble y = r / DoubleDouble(terms);
    for (int i = terms - 1; i > 0; i--) y = (DoubleDouble(1) + y) * r / DoubleDouble(i);
    for (int i = 0; i < halvings; i++) y = y * (DoubleDouble(2) + y);
    const DoubleDouble value = DoubleDouble(1) + y;
    const auto exponent = static_cast<int>(k);
    return {std::ldexp(value.hi, exponent), std::ldexp(value.lo, exponent)};
}

DoubleDouble log(DoubleDouble x) {
    const DoubleDouble y(std::log(x.hi));
    return y + (x * exp(-y) - DoubleDouble(1));
}

}  // namespace lumo
