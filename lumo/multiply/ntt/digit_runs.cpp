#include "lumo/multiply/ntt/digit_runs.h"

#include <algorithm>
#include <cstring>

#include "lumo/multiply/ntt/ntt_parts.h"

namespace lumo {

namespace {

/// A word may be cut in half by the window.
bool all_ones_below(const std::uint64_t* run, std::size_t from, std::size_t words, std::uint64_t bytes) {
    for (std::size_t i = from; i < words && 8 * i < bytes; i++) {
        const std::uint64_t wanted = bytes - 8 * i >= 8 ? ~std::uint64_t(0) : 0xffffffff;
        if ((run[i] & wanted) != wanted) return false;
    }
    return true;
}

}  // namespace

template <std::size_t CARRY>
void take_run(kernels::DigitOutput<CARRY>& output, std::size_t r, const std::uint64_t* run,
              std::size_t words) {
    const std::size_t above_head = output.first ? CARRY : 0;
    if (output.first) {
        std::copy_n(run, CARRY, output.head[r]);
        output.ones[r] = 1;
    }
    for (std::size_t i = above_head; output.ones[r] && i < words; i++)
        if (~run[i]) output.ones[r] = 0;
    for (std::size_t i = 0; i < words; i++) output.sum = add_around(output.sum, run[i]);

    const std::uint64_t place = output.place + r * output.row_bytes;
    if (r == output.begin / output.row_bytes && place < output.begin &&
        !all_ones_below(run, above_head, words, output.begin - place))
        output.below_ones = false;
    const std::uint64_t from = std::max(place, output.begin), to = std::min(place + 8 * words, output.end);
    if (from < to)
        std::memcpy(output.bytes + (from - output.begin),
                    reinterpret_cast<const unsigned char*>(run) + (from - place), to - from);
}

template void take_run(kernels::DigitOutput<4>&, std::size_t, const std::uint64_t*, std::size_t);
template void take_run(kernels::DigitOutput<5>&, std::size_t, const std::uint64_t*, std::size_t);

}  // namespace lumo
