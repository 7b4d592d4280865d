/// The lengths of the floating-point FFT. A row is the only way a length is chosen, and the rows are what
/// makes the rounding safe: the more points, the fewer bits a point carries.
///
/// Coefficients of N points of b balanced bits are at most N 2^(2 b - 2), below 2^47 in every row, where one
/// rounding is off by 2^-7 at most. That their sum stays below 1/2 is measured, not proven: 0.125 is the
/// largest distance from an integer that was met, by pieces of the largest size whose signs follow a wave and
/// that fill the transform, 0.005 by random operands. FftChain refuses 0.4375 and more: a coefficient that
/// comes out as the wrong integer is off by 0.5625 at least, among others that are not off by 0.4375.
#pragma once

#include <span>

#include "lumo/foundation/types/types.h"

namespace lumo {

struct FftSize {
    std::uint32_t limit_bits;  ///< longest product, b m 2^k; a multiple of 128
    std::uint8_t m;            ///< 1, 3 or 5
    std::uint8_t k;            ///< 7 .. 23
    std::uint8_t b;            ///< bits a point, 10 .. 20

    constexpr upL_t points() const { return upL_t(m) << k; }
    /// Complex vectors of 8 lanes.
    constexpr upL_t vectors() const { return points() / 16; }
    constexpr upL_t array_bytes() const { return align_bytes(8 * points()); }
    constexpr upL_t scratch_bytes() const { return align_bytes(4 * points()); }
    /// log2 of the vectors of one of the m parts.
    constexpr unsigned depth() const { return k - 4u; }
};

inline constexpr upL_t FFT_MAX_BITS = 100663296;

/// All 95 rows in increasing order of limit_bits.
std::span<const FftSize> fft_sizes();
/// The rows up to the first that holds `bits`; that one is the last of them. Throws LimitExceededException
/// beyond all rows.
std::span<const FftSize> fft_sizes_up_to(upL_t bits);
inline const FftSize& fft_size_for(upL_t bits) {
    return fft_sizes_up_to(bits).back();
}

}  // namespace lumo
