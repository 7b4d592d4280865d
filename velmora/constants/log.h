/// Logarithms of integers as the session computes them, by Machin-like formulas.
#pragma once

#include "velmora/constants/integer_constant.h"
#include "velmora/constants/machin/search.h"
#include "velmora/constants/plans/series_sum.h"

namespace velmora {

/// The sum of a formula's terms. Its coefficients must fit into words, as SeriesSum_BigFloatR::add() says.
template <typename wtype>
SeriesSum_BigFloatR<wtype> Log_Machin_BigFloatR(const machin::Formula& formula, upL_t p, upL_t tds);

/// ln 2 by its primary formula, which is looked for once.
template <typename wtype>
SeriesSum_BigFloatR<wtype> Log2_Machin_BigFloatR(upL_t p, upL_t tds);

class LogConstant final : public IntegerConstant {
 public:
    explicit LogConstant(const CatalogueEntry& entry);
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry);

    /// Also looks for the two formulas.
    void set_argument(std::string_view text) override;
    std::string algorithm_name(const AlgorithmEntry& entry) const override;
    /// The terms, each on a line of its own below the name.
    std::string algorithm_remark(const AlgorithmEntry& entry) const override;

    upL_t terms(upL_t precision_words) const override;
    SizeEstimate estimate(upL_t precision_words, upL_t tds) const override;
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const override;

 protected:
    upL_t largest_argument() const override { return machin::LARGEST_ARGUMENT; }
    std::string refusal(upL_t n) const override;

 private:
    void find_formulas();
    const machin::Formula& formula(const AlgorithmEntry& entry) const;
    SeriesSum_BigFloatR<std::uint64_t> plan(upL_t precision_words, upL_t tds) const;

    machin::Formula primary, secondary;
};

}  // namespace velmora
