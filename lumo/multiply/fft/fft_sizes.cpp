#include "lumo/multiply/fft/fft_sizes.h"

#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

namespace {

constexpr FftSize row(unsigned m, unsigned k, unsigned b) {
    return {b * (m << k), std::uint8_t(m), std::uint8_t(k), std::uint8_t(b)};
}

constexpr FftSize ROWS[] = {
    row(1, 7, 16),  row(1, 7, 20),  row(1, 8, 16),  row(1, 8, 20),  row(3, 7, 16),  row(3, 7, 20),
    row(1, 9, 16),  row(1, 9, 18),  row(1, 9, 19),  row(5, 7, 16),  row(5, 7, 18),  row(5, 7, 19),
    row(3, 8, 16),  row(3, 8, 18),  row(3, 8, 19),  row(1, 10, 16), row(1, 10, 18), row(1, 10, 19),
    row(5, 8, 16),  row(5, 8, 18),  row(5, 8, 19),  row(3, 9, 16),  row(3, 9, 18),  row(3, 9, 19),
    row(1, 11, 16), row(1, 11, 18), row(5, 9, 16),  row(5, 9, 18),  row(3, 10, 16), row(3, 10, 18),
    row(1, 12, 16), row(1, 12, 18), row(5, 10, 16), row(5, 10, 17), row(3, 11, 16), row(3, 11, 17),
    row(1, 13, 16), row(1, 13, 17), row(5, 11, 16), row(5, 11, 17), row(3, 12, 16), row(3, 12, 17),
    row(1, 14, 16), row(1, 14, 17), row(5, 12, 16), row(5, 12, 17), row(3, 13, 16), row(3, 13, 17),
    row(1, 15, 16), row(5, 13, 14), row(5, 13, 16), row(3, 14, 16), row(1, 16, 16), row(5, 14, 14),
    row(5, 14, 15), row(3, 15, 14), row(3, 15, 15), row(1, 17, 12), row(1, 17, 14), row(1, 17, 15),
    row(5, 15, 13), row(5, 15, 15), row(3, 16, 13), row(3, 16, 15), row(1, 18, 13), row(1, 18, 15),
    row(5, 16, 13), row(5, 16, 14), row(3, 17, 13), row(3, 17, 14), row(1, 19, 11), row(1, 19, 13),
    row(1, 19, 14), row(5, 17, 13), row(5, 17, 14), row(3, 18, 13), row(3, 18, 14), row(1, 20, 11),
    row(1, 20, 13), row(1, 20, 14), row(5, 18, 13), row(3, 19, 11), row(3, 19, 13), row(1, 21, 13),
    row(5, 19, 13), row(3, 20, 13), row(1, 22, 10), row(1, 22, 11), row(1, 22, 12), row(5, 20, 10),
    row(5, 20, 11), row(5, 20, 12), row(3, 21, 11), row(3, 21, 12), row(1, 23, 12)};

static_assert(std::size(ROWS) == 95 && ROWS[94].limit_bits == FFT_MAX_BITS);
static_assert(std::is_sorted(std::begin(ROWS), std::end(ROWS), [](const FftSize& a, const FftSize& b) {
    return a.limit_bits <= b.limit_bits;  // equal rows count as out of order
}));

}  // namespace

std::span<const FftSize> fft_sizes() {
    return ROWS;
}

std::span<const FftSize> fft_sizes_up_to(upL_t bits) {
    const auto* found =
        std::lower_bound(std::begin(ROWS), std::end(ROWS), bits,
                         [](const FftSize& size, upL_t need) { return size.limit_bits < need; });
    if (found == std::end(ROWS))
        throw LimitExceededException("AlgorithmTable::get_algorithm()", "Product is too large for the FFT.",
                                     FFT_MAX_BITS, bits);
    return {ROWS, found + 1};
}

}  // namespace lumo
