/// Arithmetic modulo primes below 2^63 for building tables.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

constexpr std::uint64_t mul_mod(std::uint64_t a, std::uint64_t b, std::uint64_t p) {
    return static_cast<std::uint64_t>(static_cast<unsigned __int128>(a) * b % p);
}
constexpr std::uint64_t pow_mod(std::uint64_t a, std::uint64_t e, std::uint64_t p) {
    std::uint64_t r = 1;
    for (; e != 0; e >>= 1, a = mul_mod(a, a, p))
        if (e & 1) r = mul_mod(r, a, p);
    return r;
}
constexpr std::uint64_t inverse_mod(std::uint64_t a, std::uint64_t p) {
    return pow_mod(a, p - 2, p);
}

/// Repeated products by one constant without division. Source: Shoup.
class ConstantMultiplier {
 public:
    ConstantMultiplier(std::uint64_t factor, std::uint64_t prime)
        : w(factor),
          q(static_cast<std::uint64_t>((static_cast<unsigned __int128>(factor) << 64) / prime)),
          p(prime) {}
    std::uint64_t operator()(std::uint64_t a) const {
        const auto high = static_cast<std::uint64_t>((static_cast<unsigned __int128>(a) * q) >> 64);
        const std::uint64_t r = a * w - high * p;
        return r >= p ? r - p : r;
    }

 private:
    std::uint64_t w, q, p;
};

}  // namespace lumo
