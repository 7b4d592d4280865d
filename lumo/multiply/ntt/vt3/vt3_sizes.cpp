#include "lumo/multiply/ntt/vt3/vt3_sizes.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"

namespace lumo {

namespace {

constexpr unsigned LEAST_K = 9, MOST_K = 39;

/// Butterflies, twists and remainders; the weights are fitted to timings of all rows up to 2^25 bits, which
/// they meet within 3 %.
double cost(const Vt3Size& size) {
    const double points = static_cast<double>(size.points());
    const double odd = size.m == 1 ? -1 : size.m == 3 ? 1 : size.m == 5 ? 2 : 4;
    return size.n * points * (std::log2(points) + odd + 6 + size.n);
}

std::vector<Vt3Size> all_sizes() {
    std::vector<Vt3Size> sizes;
    for (unsigned n = 6; n <= 9; n++)
        for (unsigned m : {1u, 3u, 5u, 7u})
            for (unsigned k = LEAST_K; k <= MOST_K; k++) {
                const Vt3PrimeSet* set = vt3_prime_set(n, m, k);
                if (!set) continue;
                const unsigned narrow = 24 * (n - 1);
                if (set->holds(m, k, narrow + 8))
                    sizes.push_back({n, m, k, narrow + 8});
                else if (set->holds(m, k, narrow))
                    sizes.push_back({n, m, k, narrow});
            }
    std::sort(sizes.begin(), sizes.end(),
              [](const Vt3Size& a, const Vt3Size& b) { return a.bits() < b.bits(); });
    return sizes;
}

std::vector<Vt3Size> best_sizes() {
    std::vector<Vt3Size> best;
    double cheapest = INFINITY;
    const auto all = vt3_all_sizes();
    for (auto size = all.rbegin(); size != all.rend(); ++size)
        if (cost(*size) < cheapest) {
            cheapest = cost(*size);
            best.push_back(*size);
        }
    std::reverse(best.begin(), best.end());
    return best;
}

}  // namespace

kernels::Vt3Shape Vt3Size::shape() const {
    // Short columns: a tile stays in the first cache, a group of rows in the second.
    const unsigned short_columns = k < 18 ? std::min(6u, k / 2) : 8u, odd = m == 1 ? 0 : 2;
    const unsigned log_h =
                       std::clamp(std::max(short_columns, k < 12 ? 0 : k - 12) - odd, 3u, m == 1 ? 12u : 10u),
                   log_c = k - log_h;
    // Groups start at different places of the cache.
    const std::size_t padding = log_c >= 10 ? 8 * 17 : 8;
    return {n, m, log_h, log_c, b, (std::size_t(8) << log_c) + padding};
}

std::span<const Vt3Size> vt3_all_sizes() {
    static const std::vector<Vt3Size> sizes = all_sizes();
    return sizes;
}

std::span<const Vt3Size> vt3_sizes() {
    static const std::vector<Vt3Size> sizes = best_sizes();
    return sizes;
}

const Vt3Size& vt3_size_for(upL_t bits) {
    const auto sizes = vt3_sizes();
    const auto size = std::lower_bound(sizes.begin(), sizes.end(), bits,
                                       [](const Vt3Size& row, upL_t wanted) { return row.bits() < wanted; });
    if (size == sizes.end())
        throw LimitExceededException("vt3_size_for()", "Transform is too small.", VT3_MAX_BITS, bits);
    return *size;
}

}  // namespace lumo
