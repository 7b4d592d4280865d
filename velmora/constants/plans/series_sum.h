/// A linear combination of values of series, one after the other in the same memory. Sizes are words of
/// `wtype` unless named bytes.
#pragma once

#include <string>
#include <vector>

#include "velmora/constants/plans/series_value.h"

namespace velmora {

template <typename wtype>
class SeriesSum_BigFloatR {
 public:
    using Number = lumo::BigFloat<wtype>;

    /// An empty sum is zero.
    SeriesSum_BigFloatR(lumo::upL_t p, lumo::upL_t tds);
    /// Adds `coefficient` times the value of a series of precision series_precision(). `name` stands in the
    /// status while the series runs. LimitExceededException "SeriesSum_BigFloatR::add()" when the
    /// coefficient's magnitude does not fit into a word.
    void add(std::int64_t coefficient, std::string name,
             std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> series, lumo::SeriesCoefficients coefficients);

    /// Of all series.
    lumo::upL_t terms() const;
    lumo::upL_t total_bytes() const;
    lumo::upL_t max_product_words() const;

    /// The sum to p words; it lies within ctx.scratch, which holds total_bytes(): BufferTooSmallException
    /// "SeriesSum_BigFloatR::run()" otherwise. ctx.tds is the plan's.
    Number run(const lumo::MultiplyContext& ctx, lumo::StatusNode& status,
               lumo::SeriesObserver<wtype>* observer = nullptr) const;

 private:
    struct Term {
        wtype magnitude;  ///< of the coefficient
        bool positive;
        std::string name;
        Series_BigFloatR<wtype> value;
    };
    lumo::upL_t p;
    lumo::upL_t tds;
    lumo::upL_t sum_words;
    std::vector<Term> list;
};

}  // namespace velmora
