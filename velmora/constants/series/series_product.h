/// Series of the P, Q, R family whose Q and R are products of linear factors in k, and whose P is a
/// polynomial, perhaps times R.
#pragma once

#include <array>
#include <span>

#include "velmora/constants/series/factor_leaf.h"

namespace velmora {

/// (a k + b)^power, positive for k >= 1.
struct LinearFactor {
    std::uint64_t a;
    std::int64_t b;
    unsigned power;
};

/// Constant factors that are read as one product.
using Factors = std::array<std::uint64_t, 2>;

struct ProductTerms {
    lumo::SeriesRates rates;
    bool alternating;  ///< R is negative, and P with it if it contains R
    lumo::upL_t overhead_words;
    lumo::upL_t leaf_terms;
    std::span<const std::int64_t> polynomial;  ///< coefficients from the constant term upward
    Factors P_constants;
    bool P_contains_R;
    Factors Q_constants;
    std::span<const LinearFactor> Q;
    Factors R_constants;
    std::span<const LinearFactor> R;
};

template <typename wtype>
class SeriesProduct final : public lumo::SeriesCommonP2B3<wtype> {
 public:
    /// The spans must outlive the series.
    explicit SeriesProduct(const ProductTerms& terms);
    lumo::DoubleDouble block_size(lumo::upL_t a, lumo::upL_t b) const override;
    void term(lumo::LeafTerm<wtype>& out, lumo::upL_t k) const override;
    void end(lumo::upL_t a, lumo::upL_t b, lumo::Parts<wtype>& out) const override;
    unsigned common_power() const override;

    // FactorTerms
    void multiply_R(LeafProduct<wtype>& product, lumo::upL_t k) const;
    void multiply_Q(LeafProduct<wtype>& product, lumo::upL_t k) const;
    lumo::upL_t set_p(wtype* words, lumo::upL_t k) const;

 private:
    ProductTerms terms;
};

}  // namespace velmora
