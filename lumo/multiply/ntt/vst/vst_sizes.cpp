#include "lumo/multiply/ntt/vst/vst_sizes.h"

#include <vector>

#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"

namespace lumo {

namespace {

std::vector<Vt3Size> all_sizes() {
    std::vector<Vt3Size> sizes;
    for (unsigned n = 6; n <= 10; n++)
        for (unsigned m : {1u, 3u, 5u, 7u})
            for (unsigned k = VT3_LEAST_K; k <= VT3_MOST_K; k++) {
                const unsigned b = 24 * (n - 1);
                const Vt3PrimeSet* set = vt3_prime_set(n, m, k);
                // The join of more than 9 primes asks for one spare bit only.
                if (!set || !set->holds(m, k, b, n > 9 ? 1 : 2)) continue;
                if (const Vt3Size size{n, m, k, b}; size.bits() <= VST_MAX_BITS) sizes.push_back(size);
            }
    return sizes;
}

}  // namespace

std::span<const Vt3Size> vst_sizes() {
    static const std::vector<Vt3Size> sizes = vt3_best_sizes(all_sizes());
    return sizes;
}

const Vt3Size& vst_size_for(upL_t bits) {
    return vt3_size_among(vst_sizes(), bits);
}

}  // namespace lumo
