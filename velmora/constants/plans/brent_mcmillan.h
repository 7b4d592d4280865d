/// Euler's constant by the sums of Brent and McMillan. Sizes are words of `wtype` unless named bytes.
///
/// gamma = V / (D (D^2 + T)) - K / (4 n I^2) - ln n with n = 2^k, I = 1 + T / D^2 and K the third sum. The
/// original form leaves K out and takes an n of twice the size.
#pragma once

#include <memory>

#include "lumo/series/brent_mcmillan/sum_ab.h"
#include "velmora/constants/plans/series_sum.h"
#include "velmora/constants/plans/series_value.h"

namespace velmora {

enum class BrentMcMillanForm { refined, original };

template <typename wtype>
class BrentMcMillan_BigFloatR {
 public:
    using Number = lumo::BigFloat<wtype>;

    BrentMcMillan_BigFloatR(BrentMcMillanForm form, lumo::upL_t p, lumo::upL_t tds);

    unsigned k() const { return exponent; }
    lumo::upL_t terms() const { return sums.terms; }
    lumo::upL_t total_bytes() const { return bytes; }
    lumo::upL_t max_product_words() const { return product_words; }

    /// Gamma to p words; it lies within ctx.scratch, which holds total_bytes(): BufferTooSmallException
    /// "BrentMcMillan_BigFloatR::run()" otherwise. ctx.tds is the plan's.
    Number run(const lumo::MultiplyContext& ctx, lumo::StatusNode& status,
               lumo::ObserverAB<wtype>* observer = nullptr,
               lumo::SeriesObserver<wtype>* third_observer = nullptr) const;

 private:
    void first_term(const lumo::MultiplyContext& ctx, lumo::StatusNode& status, Number& quotient,
                    Number& ratio, lumo::ObserverAB<wtype>* observer) const;
    Number third_sum_over_4n(const lumo::MultiplyContext& ctx, lumo::StatusNode& status,
                             lumo::SeriesObserver<wtype>* observer) const;
    void second_term(const lumo::MultiplyContext& ctx, lumo::StatusNode& status, Number& difference,
                     const Number& quotient, const Number& ratio,
                     lumo::SeriesObserver<wtype>* observer) const;

    BrentMcMillanForm form;
    lumo::upL_t p;
    unsigned exponent;
    lumo::upL_t p_second;  ///< precision of the second term, which is about e^(-4n)
    std::unique_ptr<lumo::SeriesBrentMcMillanAB<wtype>> series;
    lumo::SumAB<wtype> sums;
    lumo::Division_BigFloatR<wtype> division;
    lumo::Division_BigFloatR<wtype> division_second;
    std::unique_ptr<Series_BigFloatR<wtype>> third;  ///< none in the original form
    SeriesSum_BigFloatR<wtype> log2;
    lumo::upL_t number_words;
    lumo::upL_t second_words;
    lumo::upL_t product_words;
    lumo::upL_t bytes;
};

}  // namespace velmora
