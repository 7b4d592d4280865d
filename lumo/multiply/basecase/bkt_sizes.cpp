#include "lumo/multiply/basecase/bkt_sizes.h"

#include <algorithm>

#include "lumo/multiply/basecase/karatsuba.h"

namespace lumo {

namespace {

/// Sizes count digits of 64 bits for both word types.
template <typename wtype>
upL_t digits_of(upL_t length) {
    return (length * WordTraits<wtype>::bits + 63) / 64;
}

/// Digits that the levels of Karatsuba keep at a time.
upL_t levels_digits(upL_t n, upL_t threshold) {
    upL_t digits = 0;
    while (n >= threshold) {
        const upL_t level = round_up(n + 1, 2);
        digits += level;
        n = level / 2;
    }
    return digits;
}

}  // namespace

template <typename wtype>
upL_t bkt_array_bytes(upL_t length) {
    return align_bytes(8 * digits_of<wtype>(length) + 8);
}

template <typename wtype>
upL_t bkt_scratch_bytes(upL_t length) {
    using Thresholds = Basecase::KaratsubaThresholds<std::uint64_t>;
    const upL_t n = digits_of<wtype>(length);
    const upL_t sqr_bytes = 8 * levels_digits(n, Thresholds::sqr);
    const upL_t mul_bytes = 16 * n + 8 * levels_digits(n, Thresholds::mul);
    return align_bytes(8 * n + 8 + std::max(sqr_bytes, mul_bytes) + 16 * n);
}

template upL_t bkt_array_bytes<std::uint32_t>(upL_t);
template upL_t bkt_array_bytes<std::uint64_t>(upL_t);
template upL_t bkt_scratch_bytes<std::uint32_t>(upL_t);
template upL_t bkt_scratch_bytes<std::uint64_t>(upL_t);

}  // namespace lumo
