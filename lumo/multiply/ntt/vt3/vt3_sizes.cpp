#include "lumo/multiply/ntt/vt3/vt3_sizes.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <vector>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"

namespace lumo {

namespace {

/// Images from here on do not stay in the second cache between two passes.
constexpr std::size_t DISTANT_BYTES = std::size_t(1) << 20;
/// Images from here on leave all caches, and stores that fetch no line first write them faster; products of
/// half the length are slower with them.
constexpr std::size_t STREAMED_BYTES = std::size_t(64) << 20;
/// Of two operands a group of rows of this length, and what is fetched of the next ones, share the second
/// cache.
constexpr unsigned MOST_LOG_C = 12;
/// Columns are no shorter, but with an odd factor, which makes them longer by itself.
constexpr unsigned LEAST_LOG_H = 6;
/// Tiles of longer columns, one of each prime, outgrow the second cache by more than longer rows do.
constexpr unsigned MOST_ROWS = 7 << 10;

/// Butterflies, twists and remainders; the weights are fitted to timings of all rows up to 2^26 bits, which
/// they meet within 3 % on the average.
double cost(const Vt3Size& size) {
    const double points = static_cast<double>(size.points());
    const double primes = size.n == 6 ? 13 : size.n == 7 ? 16 : size.n == 8 ? 16.6 : 17.9;
    const double odd = size.m == 1 ? 0 : size.m == 3 ? 2.1 : size.m == 5 ? 3.4 : 5.7;
    return size.n * points * (std::log2(points) + primes + odd);
}

bool shorter(const Vt3Size& a, const Vt3Size& b) {
    return a.bits() < b.bits();
}

std::vector<Vt3Size> all_sizes() {
    std::vector<Vt3Size> sizes;
    for (unsigned n = 6; n <= 9; n++)
        for (unsigned m : {1u, 3u, 5u, 7u})
            for (unsigned k = VT3_LEAST_K; k <= VT3_MOST_K; k++) {
                const Vt3PrimeSet* set = vt3_prime_set(n, m, k);
                if (!set) continue;
                const unsigned narrow = 24 * (n - 1);
                if (set->holds(m, k, narrow + 8))
                    sizes.push_back({n, m, k, narrow + 8});
                else if (set->holds(m, k, narrow))
                    sizes.push_back({n, m, k, narrow});
            }
    std::sort(sizes.begin(), sizes.end(), shorter);
    return sizes;
}

}  // namespace

kernels::Vt3Shape Vt3Size::shape() const {
    const unsigned shortest = std::max(std::min(LEAST_LOG_H, k / 2) - (m == 1 ? 0 : 2), 3u);
    const unsigned wanted = std::max(shortest, k < MOST_LOG_C ? 0 : k - MOST_LOG_C);
    const unsigned most = static_cast<unsigned>(std::bit_width(MOST_ROWS / m)) - 1;
    const unsigned log_h = std::min(wanted, most), log_c = k - log_h;
    // Groups start at different places of the cache.
    const std::size_t padding = log_c >= kernels::VT3_PADDED_LOG_C ? 8 * 17 : 8;
    const std::size_t group_words = (std::size_t(8) << log_c) + padding;
    const std::size_t image = 8 * n * (std::size_t(m) << log_h) / 8 * group_words;
    const bool gaps = std::size_t(1) << log_h == 16 * kernels::VT3_TILE_PART;
    const std::size_t tile_gap = gaps ? kernels::VT3_TILE_GAP : 0;
    return {n, m, log_h, log_c, b, group_words, image >= DISTANT_BYTES, image >= STREAMED_BYTES, tile_gap};
}

std::span<const Vt3Size> vt3_all_sizes() {
    static const std::vector<Vt3Size> sizes = all_sizes();
    return sizes;
}

std::span<const Vt3Size> vt3_sizes() {
    static const std::vector<Vt3Size> sizes = vt3_best_sizes(all_sizes());
    return sizes;
}

const Vt3Size& vt3_size_for(upL_t bits) {
    return vt3_size_among(vt3_sizes(), bits);
}

std::vector<Vt3Size> vt3_best_sizes(std::vector<Vt3Size> all) {
    std::sort(all.begin(), all.end(), shorter);
    std::vector<Vt3Size> best;
    double cheapest = INFINITY;
    for (auto size = all.rbegin(); size != all.rend(); ++size)
        if (cost(*size) < cheapest) {
            cheapest = cost(*size);
            best.push_back(*size);
        }
    std::reverse(best.begin(), best.end());
    return best;
}

const Vt3Size& vt3_size_among(std::span<const Vt3Size> sizes, upL_t bits) {
    const auto size = std::lower_bound(sizes.begin(), sizes.end(), bits,
                                       [](const Vt3Size& row, upL_t wanted) { return row.bits() < wanted; });
    if (size == sizes.end())
        throw LimitExceededException("vt3_size_for()", "Transform is too small.", sizes.back().bits(), bits);
    return *size;
}

}  // namespace lumo
