#include "velmora/constants/plans/series_sum.h"

#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"

namespace velmora {

using lumo::AlignedBufferC;
using lumo::BigFloat;
using lumo::MultiplyContext;
using lumo::StatusNode;
using lumo::StatusSection;
using lumo::upL_t;

template <typename wtype>
SeriesSum_BigFloatR<wtype>::SeriesSum_BigFloatR(upL_t p_, upL_t tds_)
    : p(p_), tds(tds_), sum_words(lumo::align_words<wtype>(p + 8)) {}

template <typename wtype>
void SeriesSum_BigFloatR<wtype>::add(std::int64_t coefficient, std::string name,
                                     std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> series,
                                     lumo::SeriesCoefficients coefficients) {
    constexpr wtype LIMIT = static_cast<wtype>(-1);
    const auto value = static_cast<std::uint64_t>(coefficient);
    const std::uint64_t magnitude = coefficient < 0 ? 0 - value : value;
    if (magnitude > LIMIT)
        throw lumo::LimitExceededException("SeriesSum_BigFloatR::add()",
                                           "Coefficient doesn't fit into a word.", LIMIT, magnitude);
    // One more word than the result, for what the coefficients cost.
    list.push_back({static_cast<wtype>(magnitude),
                    coefficient >= 0,
                    std::move(name),
                    {std::move(series), coefficients, p + 1, tds}});
}

template <typename wtype>
upL_t SeriesSum_BigFloatR<wtype>::terms() const {
    upL_t sum = 0;
    for (const Term& term : list) sum += term.value.terms();
    return sum;
}

template <typename wtype>
upL_t SeriesSum_BigFloatR<wtype>::total_bytes() const {
    upL_t largest = 0;
    for (const Term& term : list) largest = std::max(largest, term.value.total_bytes());
    return 2 * sum_words * sizeof(wtype) + largest;
}

template <typename wtype>
upL_t SeriesSum_BigFloatR<wtype>::max_product_words() const {
    upL_t largest = 0;
    for (const Term& term : list) largest = std::max(largest, term.value.max_product_words());
    return largest;
}

template <typename wtype>
BigFloat<wtype> SeriesSum_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status,
                                                lumo::SeriesObserver<wtype>* observer) const {
    lumo::require_capacity("SeriesSum_BigFloatR::run()", ctx.scratch_bytes, total_bytes());
    AlignedBufferC buffer = ctx.buffer();
    Number sum(buffer.spawn_words<wtype>(sum_words), sum_words);
    Number next(buffer.spawn_words<wtype>(sum_words), sum_words);
    for (const Term& term : list) {
        StatusSection section(status, {{'Y', term.name}, {'w', "  "}});
        Number value = term.value.run(ctx.with_scratch(buffer), status, observer);
        value.mul_uW(term.magnitude, ctx.parallel());
        if (!term.positive) value.negate();
        next.set_add(p + 2, ctx.parallel(), sum, value);
        std::swap(sum, next);
    }
    return sum;
}

template class SeriesSum_BigFloatR<std::uint32_t>;
template class SeriesSum_BigFloatR<std::uint64_t>;

}  // namespace velmora
