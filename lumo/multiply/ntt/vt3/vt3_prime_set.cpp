#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"

#include <algorithm>
#include <array>

#include "lumo/multiply/ntt/vt3/vt3_modular.h"
#include "lumo/multiply/ntt/vt3/vt3_primes.h"

namespace lumo {

namespace {

using kernels::VT3_MAX_PRIMES;
using Limbs = std::array<std::uint64_t, 8>;

void multiply_by(Limbs& x, std::uint64_t factor) {
    unsigned __int128 carry = 0;
    for (std::uint64_t& limb : x) {
        carry += static_cast<unsigned __int128>(limb) * factor;
        limb = static_cast<std::uint64_t>(carry);
        carry >>= 64;
    }
}

std::uint64_t bits_at(const Limbs& x, unsigned position, unsigned count) {
    const unsigned word = position / 64, shift = position % 64;
    std::uint64_t bits = word < 8 ? x[word] >> shift : 0;
    if (shift && word + 1 < 8) bits |= x[word + 1] << (64 - shift);
    return bits & ((std::uint64_t(1) << count) - 1);
}

/// -x modulo 2^512.
Limbs negated(const Limbs& x) {
    Limbs y;
    bool carry = true;
    for (std::size_t i = 0; i < 8; i++) {
        y[i] = ~x[i] + carry;
        carry = carry && y[i] == 0;
    }
    return y;
}

struct Slot {
    Vt3PrimeSet set{};
    bool exists = false;
};

void fill(Slot& slot, unsigned n, unsigned m, unsigned k) {
    Vt3PrimeSet& set = slot.set;
    const auto factors = vt3_prime_factors();
    const unsigned twos = k > VT3_PRIME_SHIFT ? k - VT3_PRIME_SHIFT : 0;
    for (unsigned i = 0; i < factors.size() && set.n < n; i++)
        if (factors[i] % m == 0 && factors[i] % (1u << twos) == 0) {
            set.index[set.n] = i;
            set.p[set.n++] = vt3_prime_value(factors[i]);
        }
    if (set.n < n) return;
    slot.exists = true;

    Limbs product{1};
    for (unsigned i = 0; i < n; i++) multiply_by(product, set.p[i]);
    std::copy(product.begin(), product.end(), set.product);
    const Limbs minus = negated(product);
    std::copy(minus.begin(), minus.end(), set.crt.minus64);
    // Modulo 2^(52 n) the bits above those of -M mod 2^512 are ones.
    for (unsigned w = 0; w < n; w++) {
        const unsigned known = 52 * w >= 512 ? 0 : std::min(52u, 512 - 52 * w);
        const std::uint64_t ones = (std::uint64_t(1) << 52) - (std::uint64_t(1) << known);
        set.crt.minus52[w] = (known ? bits_at(minus, 52 * w, known) : 0) | ones;
    }
    for (unsigned w = 0; w < n; w++) set.crt.product48[w] = static_cast<double>(bits_at(product, 48 * w, 48));
    for (unsigned i = 0; i < n; i++) {
        Limbs cofactor{1};
        std::uint64_t residue = 1;
        for (unsigned j = 0; j < n; j++)
            if (j != i) {
                multiply_by(cofactor, set.p[j]);
                residue = mul_mod(residue, set.p[j] % set.p[i], set.p[i]);
            }
        std::copy(cofactor.begin(), cofactor.end(), set.crt.cofactor64[i]);
        for (unsigned w = 0; w < n; w++) set.crt.cofactor52[i][w] = bits_at(cofactor, 52 * w, 52);
        for (unsigned w = 0; w < n; w++)
            set.crt.cofactor48[i][w] = static_cast<double>(bits_at(cofactor, 48 * w, 48));
        set.cofactor_inverse[i] = inverse_mod(residue, set.p[i]);
        set.crt.p_reciprocal[i] = 1.0 / static_cast<double>(set.p[i]);
    }
}

struct Sets {
    Slot slots[5][4][3];  // n - 6, m / 2, k up to 37, 38, 39
    Sets() {
        for (unsigned n = 6; n <= 10; n++)
            for (unsigned m : {1u, 3u, 5u, 7u})
                for (unsigned k = 37; k <= 39; k++) fill(slots[n - 6][m / 2][k - 37], n, m, k);
    }
};

}  // namespace

bool Vt3PrimeSet::holds(unsigned m, unsigned k, unsigned b, unsigned spare) const {
    // m <= M >> (k + 2 b + spare), a power below that of M
    const unsigned shift = k + 2 * b + spare, word = shift / 64, bit = shift % 64;
    auto limb = [this](unsigned i) { return i < 8 ? product[i] : 0; };
    for (unsigned i = word + 2; i < 8; i++)
        if (limb(i)) return true;
    if (limb(word + 1) >> bit) return true;
    return (limb(word) >> bit) + (bit ? limb(word + 1) << (64 - bit) : 0) >= m;
}

const Vt3PrimeSet* vt3_prime_set(unsigned n, unsigned m, unsigned k) {
    static const Sets sets;
    const Slot& slot = sets.slots[n - 6][m / 2][std::max(k, 37u) - 37];
    return slot.exists ? &slot.set : nullptr;
}

}  // namespace lumo
