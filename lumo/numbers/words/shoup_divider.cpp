#include "lumo/numbers/words/shoup_divider.h"

#include <bit>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/double_word.h"

namespace lumo {

template <typename wtype>
ShoupDivider<wtype>::ShoupDivider(wtype divisor) : d(divisor), neg_d(static_cast<wtype>(wtype(0) - divisor)) {
    if (divisor >> (WordTraits<wtype>::bits - 1) != 0)
        throw InvalidParametersException("ShoupDivider()", "Divisor is too large.");
    if (divisor == 0 || std::has_single_bit(divisor))
        throw InvalidParametersException("ShoupDivider()", "Untested with power-of-two.");
    const DoubleWord<wtype> inverse = static_cast<DoubleWord<wtype>>(~DoubleWord<wtype>(0)) / divisor;
    inv_lo = static_cast<wtype>(inverse);
    inv_hi = high_word<wtype>(inverse);
}

template <typename wtype>
wtype ShoupDivider<wtype>::add(wtype a, wtype b) const {
    const wtype s = a + b;
    return s >= d ? s - d : s;
}

template <typename wtype>
wtype ShoupDivider<wtype>::mul(wtype a, wtype b) const {
    wtype w = inv_hi * b + mul_high(inv_lo, b);
    if (static_cast<wtype>(w * neg_d) >= d) w++;  // now floor(b 2^W / d)
    const wtype r = a * b + mul_high(a, w) * neg_d;
    return r >= d ? r + neg_d : r;
}

template <typename wtype>
wtype ShoupDivider<wtype>::shift(wtype a) const {
    const wtype r = (mul_high(inv_lo, a) + inv_hi * a) * neg_d;
    return r >= d ? r + neg_d : r;
}

template <typename wtype>
wtype ShoupDivider<wtype>::pow2W(upL_t e) const {
    if (e == 0) return 1;
    wtype r = shift(1);
    for (int bit = static_cast<int>(std::bit_width(e)) - 2; bit >= 0; bit--) {
        r = mul(r, r);
        if (e >> bit & 1) r = shift(r);
    }
    return r;
}

template struct ShoupDivider<std::uint32_t>;
template struct ShoupDivider<std::uint64_t>;

}  // namespace lumo
