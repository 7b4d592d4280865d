#include "lumo/multiply/basecase/bkt_sizes.h"

#include <algorithm>

#include "lumo/multiply/basecase/karatsuba.h"

namespace lumo {

namespace {

/// Products are counted in digits of 64 bits for both word types.
template <typename wtype>
upL_t digits_of(upL_t length) {
    return (length * WordTraits<wtype>::bits + 63) / 64;
}

/// Words that the levels of Karatsuba keep at a time.
upL_t levels_words(upL_t L, upL_t threshold) {
    upL_t words = 0;
    while (L >= threshold) {
        const upL_t level = round_up(L + 1, 2);
        words += level;
        L = level / 2;
    }
    return words;
}

}  // namespace

template <typename wtype>
upL_t bkt_array_bytes(upL_t length) {
    return align_bytes(8 * digits_of<wtype>(length) + 8);
}

template <typename wtype>
upL_t bkt_scratch_bytes(upL_t length) {
    using Thresholds = Basecase::KaratsubaThresholds<wtype>;
    const upL_t n = digits_of<wtype>(length);
    const upL_t sqr_bytes = sizeof(wtype) * levels_words(length, Thresholds::sqr);
    const upL_t mul_bytes = 16 * n + sizeof(wtype) * levels_words(length, Thresholds::mul);
    return align_bytes(8 * n + 8 + std::max(sqr_bytes, mul_bytes) + 16 * n);
}

upL_t bkt_largest_operand(upL_t bytes) {
    constexpr upL_t threshold = Basecase::KaratsubaThresholds<std::uint64_t>::mul;
    const auto fits = [&](upL_t n) {
        return (n < threshold ? 24 * n : 40 * n + 8 * levels_words(n, threshold)) <= bytes;
    };
    upL_t low = 1, high = BKT_MAX_BITS / 128 + 1;
    while (high - low > 1) {
        const upL_t n = (low + high) / 2;
        (fits(n) ? low : high) = n;
    }
    return low;
}

template upL_t bkt_array_bytes<std::uint32_t>(upL_t);
template upL_t bkt_array_bytes<std::uint64_t>(upL_t);
template upL_t bkt_scratch_bytes<std::uint32_t>(upL_t);
template upL_t bkt_scratch_bytes<std::uint64_t>(upL_t);

}  // namespace lumo
