#include "lumo/multiply/ntt/n64/n64_join.h"

#include <cstring>

#include "lumo/multiply/ntt/digit_runs.h"
#include "lumo/multiply/ntt/modular.h"

namespace lumo {

N64Join::N64Join(const N64PrimeSet& primes, upL_t points) {
    std::uint64_t scale[N64_PRIMES];
    for (unsigned i = 0; i < N64_PRIMES; i++) {
        fields[i] = primes[i].field;
        const std::uint64_t p = fields[i].p;
        // 1 / N = -(p - 1) / N; the pointwise products left a factor 2^-64 behind.
        scale[i] = mul_mod(p - (p - 1) / points, primes[i].unit, p);
    }
    p1 = fields[0].p;
    const std::uint64_t p2 = fields[1].p, p3 = fields[2].p;
    const unsigned __int128 p1p2 = static_cast<unsigned __int128>(p1) * p2;
    p1p2_low = static_cast<std::uint64_t>(p1p2);
    p1p2_high = static_cast<std::uint64_t>(p1p2 >> 64);
    const std::uint64_t by_p1 = inverse_mod(p1 % p2, p2), by_p2 = inverse_mod(p2 % p3, p3);
    const std::uint64_t by_both = inverse_mod(static_cast<std::uint64_t>(p1p2 % p3), p3);
    first = n64_factor(scale[0], p1);
    second = n64_factor(mul_mod(scale[1], by_p1, p2), p2);
    second_v1 = n64_factor(by_p1, p2);
    third = n64_factor(mul_mod(scale[2], by_both, p3), p3);
    third_v1 = n64_factor(by_both, p3);
    third_v2 = n64_factor(by_p2, p3);
}

void N64Join::operator()(const std::uint64_t* tile, std::size_t rows,
                         kernels::DigitOutput<N64_CARRY_WORDS>& output) const {
    using Double = unsigned __int128;
    const std::size_t tile_words = 16 * rows;
    for (std::size_t r = 0; r < rows; r++, tile += 16) {
        std::uint64_t* carry = output.carry[r];
        if (output.first) std::memset(carry, 0, 8 * N64_CARRY_WORDS);
        std::uint64_t low_carry = carry[0], high_carry = carry[1];
        std::uint64_t run[16];
        for (std::size_t j = 0; j < 16; j++) {
            const std::uint64_t v1 = fields[0].mul(tile[j], first);
            const std::uint64_t v2 =
                fields[1].sub(fields[1].mul(tile[tile_words + j], second), fields[1].mul(v1, second_v1));
            const std::uint64_t v3 = fields[2].sub(
                fields[2].sub(fields[2].mul(tile[2 * tile_words + j], third), fields[2].mul(v1, third_v1)),
                fields[2].mul(v2, third_v2));
            const Double a = static_cast<Double>(v2) * p1 + v1;
            const Double low = static_cast<Double>(v3) * p1p2_low + static_cast<std::uint64_t>(a);
            const Double middle = static_cast<Double>(v3) * p1p2_high + static_cast<std::uint64_t>(a >> 64) +
                                  static_cast<std::uint64_t>(low >> 64);
            output.top |= static_cast<std::uint64_t>(middle >> 64);
            const Double sum = static_cast<Double>(static_cast<std::uint64_t>(low)) + low_carry;
            run[j] = static_cast<std::uint64_t>(sum);
            const Double rest = middle + high_carry + static_cast<std::uint64_t>(sum >> 64);
            low_carry = static_cast<std::uint64_t>(rest);
            high_carry = static_cast<std::uint64_t>(rest >> 64);
        }
        carry[0] = low_carry;
        carry[1] = high_carry;
        take_run(output, r, run, 16);
    }
}

}  // namespace lumo
