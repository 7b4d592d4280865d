#include "velmora/constants/machin/factors.h"

namespace velmora::machin {

Exponents factor(std::uint64_t n, std::int64_t scale) {
    Exponents result;
    const auto take = [&](std::uint64_t p) {
        for (; n % p == 0; n /= p) result[p] += scale;
    };
    for (const std::uint64_t p : SMALL_PRIMES) take(p);
    for (std::uint64_t p = 23; p <= 1000000 && p * p <= n; p += 2) take(p);
    if (n != 1) result[n] += scale;
    if (scale == 0) result.clear();
    return result;
}

void add(Exponents& sum, const Exponents& added) {
    for (const auto& [prime, exponent] : added) {
        if ((sum[prime] += exponent) == 0) sum.erase(prime);
    }
}

std::uint64_t rough_part(std::uint64_t n, std::size_t count) {
    for (const std::uint64_t p : std::span(SMALL_PRIMES).first(count)) {
        while (n % p == 0) n /= p;
    }
    return n;
}

}  // namespace velmora::machin
