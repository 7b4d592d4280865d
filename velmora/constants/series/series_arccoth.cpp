#include "velmora/constants/series/series_arccoth.h"

#include <array>
#include <bit>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/series/binary_bbp/binary_bbp.h"
#include "velmora/constants/series/leaf_words.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

/// A power p^e that divides ARCCOTH_COMMON, and the p whose one factor it stands for.
struct PrimePower {
    std::uint64_t power;
    std::uint64_t prime;
    std::uint64_t inverse;  ///< of p modulo 2^64: an exact division by p is a product
};

constexpr std::uint64_t inverse_of(std::uint64_t odd) {
    std::uint64_t inverse = odd;
    for (int i = 0; i < 5; ++i) inverse *= 2 - odd * inverse;
    return inverse;
}

constexpr std::array<PrimePower, 16> prime_powers() {
    std::array<PrimePower, 16> list{};
    std::size_t count = 0;
    std::uint64_t rest = ARCCOTH_COMMON;
    for (std::uint64_t p = 3; rest != 1; p += 2) {
        for (std::uint64_t power = p; rest % p == 0; power *= p, rest /= p)
            list[count++] = {power, p, inverse_of(p)};
    }
    return list;
}
constexpr std::array<PrimePower, 16> COMMON_POWERS = prime_powers();
static_assert(COMMON_POWERS.back().prime == 43);

/// The mean of ln gcd(n, ARCCOTH_COMMON) over odd n: every p^e gives ln(p) / p^e.
DoubleDouble mean_common_size() {
    DoubleDouble sum(0);
    for (const PrimePower& f : COMMON_POWERS)
        sum = sum + log(DoubleDouble::from_count(f.prime)) / DoubleDouble::from_count(f.power);
    return sum;
}

constexpr upL_t LEAF_TERMS = 48;

/// n / g and s / g for consecutive odd n, by sieving: a gcd each would take longer than the rest of a leaf.
class OddNumbers {
 public:
    /// From n = 2a - 1 on, at most LEAF_TERMS of them.
    OddNumbers(upL_t a, upL_t count) {
        for (upL_t i = 0; i < count; ++i) {
            denominator[i] = 2 * (a + i) - 1;
            numerator[i] = ARCCOTH_COMMON;
        }
        for (const PrimePower& f : COMMON_POWERS) {
            // The first i with p^e dividing 2(a + i) - 1.
            const std::uint64_t missing = f.power - (2 * a - 1) % f.power;
            const std::uint64_t twice = missing == f.power ? 0 : missing;
            for (upL_t i = (twice % 2 == 0 ? twice : twice + f.power) / 2; i < count; i += f.power) {
                denominator[i] *= f.inverse;
                numerator[i] *= f.inverse;
            }
        }
    }
    std::uint64_t denominator[LEAF_TERMS];
    std::uint64_t numerator[LEAF_TERMS];
};

template <typename wtype>
class SeriesArcCoth final : public lumo::BinaryBBP<wtype> {
 public:
    SeriesArcCoth(std::uint64_t x_, const lumo::GeometricRatio<wtype>& square)
        : lumo::BinaryBBP<wtype>(
              square,
              DoubleDouble(2) * log(DoubleDouble::from_count(x_)) + lumo::LN2_PAIR - mean_common_size(), 31,
              LEAF_TERMS),
          x(x_) {
        // P may exceed Q by s, and what is taken out of a range may fall short of the mean by as much.
        this->excess_bits = 128;
    }

    DoubleDouble block_size(upL_t a, upL_t b) const override {
        const DoubleDouble size =
            DoubleDouble::from_count(b - a) * this->rates.size + log_gamma_difference(a, b, -0.5L);
        // The first terms of x < 4 have less than the mean.
        return DoubleDouble(0) > size ? DoubleDouble(0) : size;
    }

    void fraction(lumo::LeafTerm<wtype>& out, upL_t k) const override {
        const OddNumbers odd(k, 1);
        LeafProduct<wtype> P(out.P), R(out.R);
        P.multiply(odd.numerator[0]);
        R.multiply(odd.denominator[0]);
        out.PL = P.length();
        out.RL = R.length();
        out.P_positive = out.R_positive = true;
    }

    /// Term by term P := P d x^2 + D c and D := D d, with c / d the term.
    void end(upL_t a, upL_t b, lumo::Parts<wtype>& out) const override {
        // Denominators of 62 bits, x^2 of 124; P has a numerator above them.
        constexpr upL_t WORDS = (LEAF_TERMS * 186 + 128) / lumo::WordTraits<wtype>::bits;
        lumo::require(b - a <= LEAF_TERMS, "A leaf has grown beyond its words.", "ArcCoth_BSR_End()");
        const OddNumbers odd(a, b - a);
        const bool small = std::bit_width(2 * b) + 2 * std::bit_width(x) <= 63;
        wtype P[WORDS], D[WORDS];
        upL_t PL = 0, DL = 1;
        D[0] = 1;
        for (upL_t i = 0; i < b - a; ++i) {
            const std::uint64_t d = odd.denominator[i];
            if (small) {
                PL = lumo::multiply_add(P, PL, d * x * x, 0);
            } else {
                for (const std::uint64_t factor : {d, x, x}) PL = lumo::multiply_add(P, PL, factor, 0);
            }
            PL = lumo::add_product(P, PL, D, DL, odd.numerator[i]);
            DL = lumo::multiply_add(D, DL, d, 0);
        }
        set_words(out.P, P, PL, true);
        set_words(out.R, D, DL, true);
    }

 private:
    std::uint64_t x;
};

}  // namespace

template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> Series_ArcCoth_Base(std::uint64_t x) {
    constexpr const char* LOCATION = "Series_ArcCoth_Base()";
    if (x < 2) throw lumo::InvalidParametersException(LOCATION, "Argument is too small.");
    const auto zeros = static_cast<unsigned>(std::countr_zero(x));
    const auto odd = static_cast<wtype>(x >> zeros);
    if (x >> 62 != 0 || odd != x >> zeros)
        throw lumo::InvalidParametersException(LOCATION, "Argument is too large.");
    return std::make_unique<SeriesArcCoth<wtype>>(x, lumo::GeometricRatio<wtype>{odd, 2, 2 * zeros});
}

template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint32_t>> Series_ArcCoth_Base(std::uint64_t);
template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint64_t>> Series_ArcCoth_Base(std::uint64_t);

lumo::SeriesCoefficients arccoth_coefficients(std::uint64_t x) {
    return {static_cast<std::int64_t>(x), 0, static_cast<std::int64_t>(ARCCOTH_COMMON), 1};
}

}  // namespace velmora
