/// The two series of Pi in the P, Q, R family. Term index k >= 1; k = 0 is in the finishing coefficients.
#pragma once

#include <array>

#include "lumo/series/series_common_p2b3.h"
#include "velmora/constants/series/factor_leaf.h"

namespace velmora {

/// R = (2k-1)(a k - b)(a k - 1), P = R p(k) for a linear p, Q = k^3 f g.
struct PiTerms {
    const char* rate_size;
    const char* rate_converge;
    lumo::upL_t leaf_terms;
    bool alternating;  ///< R is negative, and P with it
    std::uint64_t a, b;
    std::array<std::int64_t, 2> p;  ///< constant term first
    std::uint64_t f, g;
};

template <typename wtype>
class SeriesPi : public lumo::SeriesCommonP2B3<wtype> {
 public:
    lumo::DoubleDouble block_size(lumo::upL_t a, lumo::upL_t b) const final;
    void term(lumo::LeafTerm<wtype>& out, lumo::upL_t k) const final;
    void end(lumo::upL_t a, lumo::upL_t b, lumo::Parts<wtype>& out) const final;
    unsigned common_power() const final { return 3; }

    // FactorTerms
    void multiply_R(LeafProduct<wtype>& product, lumo::upL_t k) const;
    void multiply_Q(LeafProduct<wtype>& product, lumo::upL_t k) const;
    lumo::upL_t set_p(wtype* words, lumo::upL_t k) const;

 protected:
    explicit SeriesPi(const PiTerms& terms);

 private:
    PiTerms terms;
};

/// R = (2k-1)(6k-5)(6k-1), P = R (13591409 + 545140134 k), Q = k^3 640320^3 / 24, alternating.
/// Source: D. and G. Chudnovsky, "Approximations and complex multiplication according to Ramanujan" (1988).
template <typename wtype>
class SeriesPiChudnovsky final : public SeriesPi<wtype> {
 public:
    SeriesPiChudnovsky();
};

/// R = (2k-1)(4k-3)(4k-1), P = R (1103 + 26390 k), Q = k^3 396^4 / 8.
/// Source: Ramanujan, "Modular equations and approximations to pi" (1914).
template <typename wtype>
class SeriesPiRamanujan final : public SeriesPi<wtype> {
 public:
    SeriesPiRamanujan();
};

}  // namespace velmora
