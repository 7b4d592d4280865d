#include "velmora/constants/series/series_arccoth.h"

#include <array>
#include <numeric>

#include "lumo/foundation/errors/exceptions.h"
#include "velmora/constants/series/leaf_words.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;
using lumo::upL_t;

/// gcd(n, M) by n mod M: a gcd by division would cost as much as the rest of a leaf.
template <unsigned M>
constexpr auto GCD_TABLE = [] {
    std::array<std::uint16_t, M> table{};
    for (unsigned i = 0; i < M; ++i) table[i] = static_cast<std::uint16_t>(std::gcd(i, M));
    return table;
}();

/// gcd(n, ARCCOTH_COMMON), by factors whose tables are small together.
template <unsigned... M>
std::uint64_t common_by_tables(std::uint64_t n) {
    static_assert((std::uint64_t(M) * ... * 1) == ARCCOTH_COMMON);
    return (std::uint64_t(GCD_TABLE<M>[n % M]) * ... * 1);
}
std::uint64_t common_part(std::uint64_t n) {
    return common_by_tables<27 * 25 * 7, 11 * 13 * 17, 19 * 23, 29 * 31, 37, 41 * 43>(n);
}

/// The mean of ln gcd(n, ARCCOTH_COMMON) over odd n: every power of a prime p in it, p^e, gives ln(p) / p^e.
DoubleDouble mean_common_size() {
    DoubleDouble sum(0);
    std::uint64_t rest = ARCCOTH_COMMON;
    for (std::uint64_t p = 3; rest != 1; p += 2) {
        const DoubleDouble size = log(DoubleDouble::from_count(p));
        for (std::uint64_t power = p; rest % p == 0; power *= p, rest /= p)
            sum = sum + size / DoubleDouble::from_count(power);
    }
    return sum;
}

template <typename wtype>
class SeriesArcCoth final : public lumo::SeriesCommonP2B3<wtype> {
 public:
    SeriesArcCoth(std::uint64_t x_, DoubleDouble square)
        : lumo::SeriesCommonP2B3<wtype>({square + lumo::LN2_PAIR - mean_common_size(), square}, 31, 16),
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

    void term(lumo::LeafTerm<wtype>& out, upL_t k) const override {
        const std::uint64_t n = 2 * k - 1;
        const std::uint64_t common = common_part(n);
        const std::uint64_t rest = n / common;
        LeafProduct<wtype> P(out.P), Q(out.Q), R(out.R);
        P.multiply(ARCCOTH_COMMON / common);
        Q.multiply(rest);
        Q.multiply(x, 2);
        R.multiply(rest);
        out.PL = P.length();
        out.QL = Q.length();
        out.RL = R.length();
        out.P_positive = out.R_positive = true;
    }

 private:
    std::uint64_t x;
};

}  // namespace

template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> Series_ArcCoth_Base(std::uint64_t x) {
    constexpr const char* LOCATION = "Series_ArcCoth_Base()";
    if (x < 2) throw lumo::InvalidParametersException(LOCATION, "Argument is too small.");
    if (x >> 62 != 0) throw lumo::InvalidParametersException(LOCATION, "Argument is too large.");
    const DoubleDouble square = DoubleDouble(2) * log(DoubleDouble::from_count(x));
    return std::make_unique<SeriesArcCoth<wtype>>(x, square);
}

template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint32_t>> Series_ArcCoth_Base(std::uint64_t);
template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint64_t>> Series_ArcCoth_Base(std::uint64_t);

lumo::SeriesCoefficients arccoth_coefficients(std::uint64_t x) {
    return {static_cast<std::int64_t>(x), 0, static_cast<std::int64_t>(ARCCOTH_COMMON), 1};
}

}  // namespace velmora
