/// Operands of transforms, which cut integers into digits of b bits, and their exact products.
#pragma once

#include <gmp.h>

#include <algorithm>
#include <random>
#include <span>
#include <vector>

#include "word_arrays.h"

namespace lumo::testing {

using Words = std::vector<std::uint64_t>;

/// By digits of b bits. Half: 2^(b-1) - 1 or 2^(b-1), where balanced digits are largest. Alternating: all
/// zeros and all ones in turn. Top bits: only the highest bit of each.
enum class Pattern { random, ones, sparse, half, alternating, top_bits };

inline const char* name_of(Pattern pattern) {
    const char* names[] = {"random", "ones", "sparse", "half", "alternating", "top_bits"};
    return names[int(pattern)];
}

inline Words operand(Pattern pattern, upL_t words, unsigned b, unsigned seed = 0) {
    std::mt19937_64 random(seed);
    Words a(words);
    const auto set_bits = [&](auto wanted) {
        const upL_t period = std::min(words, upL_t(2) * b);  // in words, of two digits and of one
        for (upL_t bit = 0; bit < 64 * period; bit++)
            if (wanted(bit)) a[bit / 64] |= std::uint64_t(1) << (bit % 64);
        for (upL_t i = period; i < words; i++) a[i] = a[i - period];
    };
    switch (pattern) {
        case Pattern::random:
            return shaped_words<std::uint64_t>(Shape::random, words, random);
        case Pattern::ones:
            return shaped_words<std::uint64_t>(Shape::ones, words, random);
        case Pattern::sparse:
            return shaped_words<std::uint64_t>(Shape::sparse, words, random);
        case Pattern::half:
            set_bits([b](upL_t bit) { return bit % b != b - 1; });
            break;
        case Pattern::alternating:
            set_bits([b](upL_t bit) { return bit / b % 2 != 0; });
            break;
        case Pattern::top_bits:
            set_bits([b](upL_t bit) { return bit % b == b - 1; });
            break;
    }
    return a;
}

inline Words window_of(const Words& t, upL_t s, upL_t L) {
    return Words(t.begin() + long(s), t.begin() + long(L));
}

inline Words exact_product(const Words& a, const Words& b) {
    Words t(a.size() + b.size());
    const Words &x = a.size() >= b.size() ? a : b, &y = a.size() >= b.size() ? b : a;
    if (!y.empty()) mpn_mul(t.data(), x.data(), mp_size_t(x.size()), y.data(), mp_size_t(y.size()));
    return t;
}

inline constexpr mp_limb_t RESIDUE_PRIMES[] = {(mp_limb_t(1) << 61) - 1, ~mp_limb_t(0) - 58,
                                               ~mp_limb_t(0) - 82};

/// Whether t = a b modulo each of the given numbers: for lengths at which a product by GMP takes too long.
inline bool agrees_by_residues(const Words& t, const Words& a, const Words& b,
                               std::span<const mp_limb_t> moduli = RESIDUE_PRIMES) {
    return std::all_of(moduli.begin(), moduli.end(), [&](mp_limb_t modulus) {
        const auto residue = [modulus](const Words& x) {
            return mpn_mod_1(x.data(), mp_size_t(x.size()), modulus);
        };
        return residue(t) == mp_limb_t(static_cast<unsigned __int128>(residue(a)) * residue(b) % modulus);
    });
}

/// Product modulo 2^(64 size) + sign. For sign 1 the residue 2^(64 size) comes out as zero.
inline Words wrapped_product(const Words& a, const Words& b, upL_t size, int sign) {
    Words t = exact_product(a, b);
    t.resize(2 * size);
    const auto n = mp_size_t(size);
    Words low = window_of(t, 0, size);
    const auto join = sign > 0 ? mpn_sub_n : mpn_add_n;
    if (join(low.data(), low.data(), t.data() + size, n)) mpn_add_1(low.data(), low.data(), n, 1);
    return low;
}

}  // namespace lumo::testing
