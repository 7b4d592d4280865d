#include "lumo/multiply/ntt/n64/n64_sizes.h"

#include <algorithm>
#include <vector>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/ntt/n64/n64_primes.h"

namespace lumo {

namespace {

constexpr unsigned LEAST_K = 8;
/// Less than this many bytes of residues is not worth a task.
constexpr upL_t LEAST_TASK_BYTES = upL_t(1) << 16;

std::vector<N64Size> all_sizes() {
    std::vector<N64Size> sizes;
    for (unsigned m : {1u, 3u, 5u, 7u})
        for (unsigned k = LEAST_K; k <= N64_MOST_TWOS; k++)
            if (n64_primes_hold(m, k)) sizes.push_back({m, k});
    std::sort(sizes.begin(), sizes.end(),
              [](const N64Size& a, const N64Size& b) { return a.points() < b.points(); });
    while (sizes[sizes.size() - 2].bits() >= N64_MAX_BITS) sizes.pop_back();
    return sizes;
}

}  // namespace

/// Rows fill the first cache as long as the tiles of columns stay in the second.
unsigned N64Size::log_c() const {
    return k < 16 ? k - 4 : std::max(12u, k / 2);
}

std::span<const N64Size> n64_sizes() {
    static const std::vector<N64Size> sizes = all_sizes();
    return sizes;
}

const N64Size& n64_size_for(upL_t bits) {
    if (bits > N64_MAX_BITS)
        throw LimitExceededException("n64_size_for()", "Transform is too small.", N64_MAX_BITS, bits);
    const auto sizes = n64_sizes();
    return *std::lower_bound(sizes.begin(), sizes.end(), bits,
                             [](const N64Size& row, upL_t wanted) { return row.bits() < wanted; });
}

N64Footprint::N64Footprint(const N64Size& size, upL_t tds) {
    // Rows start at different places of the cache.
    row_words = size.columns() + (size.log_c() >= 9 ? 8 : 0);
    prime = align_bytes(8 * row_words * size.rows());
    image = N64_PRIMES * prime + ALIGNMENT_BYTES;
    grid.rows = size.rows();
    grid.tiles = size.columns() / 16;
    grid.pieces = std::max(
        upL_t(1), std::min({tds, grid.tiles, N64_PRIMES * prime / LEAST_TASK_BYTES, NTT_MOST_PIECES}));
    grid.run_bytes = 16 * 8;
    grid.tile_bytes = N64_PRIMES * 16 * 8 * size.rows();
    scratch = grid.scratch_bytes(N64_CARRY_WORDS);
}

}  // namespace lumo
