#include "lumo/multiply/ntt/vt3/vt3_modular.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>

#include "lumo/multiply/ntt/vt3/vt3_primes.h"

using namespace lumo;
using kernels::Vt3Form;

namespace {

// A quotient that is off by one would leave the bounds of the integer fields, which not every product shows.
TEST(Vt3FactorOf, QuotientsAreThoseOfDivision) {
    std::mt19937_64 random(1);
    for (const auto c : vt3_prime_factors()) {
        const std::uint64_t p = vt3_prime_value(c);
        for (const auto& [form, bits] :
             {std::pair(Vt3Form::integer52, 52), std::pair(Vt3Form::integer64, 64)}) {
            const Vt3FactorOf factor(form, p);
            for (int i = 0; i < 200; i++) {
                const std::uint64_t w = i < 3   ? static_cast<std::uint64_t>(i)
                                        : i < 6 ? p - static_cast<std::uint64_t>(i - 2)
                                                : random() % p;
                const auto exact =
                    static_cast<std::uint64_t>((static_cast<unsigned __int128>(w) << bits) / p);
                ASSERT_EQ(factor(w).w, w);
                ASSERT_EQ(factor(w).q, exact) << "w = " << w << ", p = " << p;
            }
        }
    }
}

}  // namespace
