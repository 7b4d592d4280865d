/// The value of one series: the sum as a fraction, and its quotient. Sizes are words of `wtype` unless named
/// bytes.
#pragma once

#include <memory>

#include "lumo/functions/division.h"
#include "lumo/series/psr_series.h"

namespace velmora {

template <typename wtype>
class Series_BigFloatR {
 public:
    using Number = lumo::BigFloat<wtype>;

    /// Throws what PSR_SeriesB throws. `coefficients` as there. ctx.tds of run() is `tds`.
    Series_BigFloatR(std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> series,
                     lumo::SeriesCoefficients coefficients, lumo::upL_t p, lumo::upL_t tds,
                     bool reduced = false);

    lumo::upL_t terms() const { return sum.terms; }
    lumo::upL_t output_words() const { return part_words; }
    lumo::upL_t total_bytes() const { return bytes; }
    lumo::upL_t max_product_words() const { return product_words; }

    /// The value to p words. It stands at the start of ctx.scratch, which holds total_bytes(), in
    /// output_words() of capacity. BufferTooSmallException "Series_BigFloatR::run()" otherwise.
    Number run(const lumo::MultiplyContext& ctx, lumo::StatusNode& status,
               lumo::SeriesObserver<wtype>* observer = nullptr) const;

    /// The steps of run(), for a caller that changes the fraction in between: the value is N / D. Both stand
    /// in the first 2 output_words() of ctx.scratch, in either order, each with output_words() of capacity.
    void fraction(const lumo::MultiplyContext& ctx, lumo::StatusNode& status, Number& N, Number& D,
                  lumo::SeriesObserver<wtype>* observer) const;
    Number quotient(const lumo::MultiplyContext& ctx, lumo::StatusNode& status, const Number& N,
                    const Number& D) const;

 private:
    std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> series;
    lumo::upL_t p;
    lumo::PSR_SeriesB<wtype> sum;
    lumo::Division_BigFloatR<wtype> division;
    lumo::upL_t part_words;  ///< of numerator and denominator, and of the quotient
    lumo::upL_t product_words;
    lumo::upL_t bytes;
};

}  // namespace velmora
