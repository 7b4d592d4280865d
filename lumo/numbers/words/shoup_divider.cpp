#include "lumo/numbers/words/shoup_divider.h"

#include "lumo/foundation/errors/exceptions.h"

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

template struct ShoupDivider<std::uint32_t>;
template struct ShoupDivider<std::uint64_t>;

}  // namespace lumo
