#include "lumo/multiply/ntt/vt3/vt3_wide_join.h"

#include <bit>
#include <cstring>

#include "lumo/multiply/ntt/digit_runs.h"
#include "lumo/multiply/ntt/vt3/vt3_modular.h"

namespace lumo {

using namespace kernels;

namespace {

constexpr unsigned MOST_WORDS = 8;               ///< 10 primes of 48 bits
constexpr std::size_t MOST_RUN = 16 * 216 / 64;  ///< words of 16 digits

/// A residue as it stands in a tile, as an integer of the same class. Doubles are above -16 p.
std::uint64_t plain(Vt3Form form, std::uint64_t x, std::uint64_t p) {
    if (form == Vt3Form::integer64) return x;
    if (form == Vt3Form::integer52) return x & ((std::uint64_t(1) << 52) - 1);
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(std::bit_cast<double>(x))) + 16 * p;
}

}  // namespace

void Vt3WideJoin::reduce(std::uint64_t* row) const {
    for (unsigned i = 0; i < all.n; i++) {
        const std::uint64_t p = constants.primes[i]->p;
        const Vt3Form form = forms[i % 2];
        std::uint64_t* residues = row + i * all.tile_words();
        for (std::size_t j = 0; j < VT3_COLUMNS; j++) residues[j] = plain(form, residues[j], p) % p;
    }
}

/// Sum of factors times cofactors less the multiple of M told by the floating quotient: the value is at most
/// M / 2, so sum y_i / p_i + 1 / 4 has a fraction in [1/4, 3/4].
void Vt3WideJoin::digit(const std::uint64_t* factors, std::uint64_t* value, unsigned words) const {
    const auto accumulate = [&](std::uint64_t factor, const std::uint64_t* limbs) {
        std::uint64_t carry = 0;
        for (unsigned w = 0; w < words; w++) {
            const unsigned __int128 t = static_cast<unsigned __int128>(factor) * limbs[w] + value[w] + carry;
            value[w] = static_cast<std::uint64_t>(t);
            carry = static_cast<std::uint64_t>(t >> 64);
        }
    };
    double quotient = 0.25;
    for (unsigned i = 0; i < all.n; i++) {
        const std::uint64_t factor = factors[i * all.tile_words()];
        quotient += static_cast<double>(factor) * constants.p_reciprocal[i];
        accumulate(factor, constants.cofactor64[i]);
    }
    accumulate(static_cast<std::uint64_t>(quotient), constants.minus64);
}

template <std::size_t CARRY>
void Vt3WideJoin::operator()(std::uint64_t* tiles, DigitOutput<CARRY>& output) const {
    const unsigned words = (48 * all.n + 63) / 64, whole = all.b / 64, shift = all.b % 64;
    for (std::size_t r = 0; r < all.rows(); r++) {
        std::uint64_t* row = tiles + all.tile_place(r);
        reduce(row);
        std::uint64_t* carry = output.carry[r];
        if (output.first) std::memset(carry, 0, 8 * CARRY);
        alignas(8) unsigned char run[8 * (MOST_RUN + 1)];
        for (std::size_t j = 0; j < VT3_COLUMNS; j++) {
            std::uint64_t value[MOST_WORDS + 2] = {};
            digit(row + j, value, words);
            output.top |= value[words - 1];
            unsigned __int128 sum = 0;
            for (unsigned w = 0; w < words; w++) {
                sum += value[w];
                if (w < CARRY) sum += carry[w];
                value[w] = static_cast<std::uint64_t>(sum);
                sum >>= 64;
            }
            std::memcpy(run + j * (all.b / 8), value, 8 * (whole + 1));
            for (unsigned w = 0; w < CARRY; w++) {
                const unsigned low = whole + w;
                carry[w] = low >= words ? 0
                           : shift      ? (value[low] >> shift) | (value[low + 1] << (64 - shift))
                                        : value[low];
            }
        }
        std::uint64_t finished[MOST_RUN];
        std::memcpy(finished, run, all.run_bytes());
        take_run(output, r, finished, all.run_bytes() / 8);
    }
}

template void Vt3WideJoin::operator()(std::uint64_t*, DigitOutput<4>&) const;
template void Vt3WideJoin::operator()(std::uint64_t*, DigitOutput<5>&) const;

}  // namespace lumo
