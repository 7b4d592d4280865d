#include "velmora/constants/plans/series_value.h"

#include <algorithm>

#include "lumo/functions/division_status.h"

namespace velmora {

using lumo::AlignedBufferC;
using lumo::BigFloat;
using lumo::MultiplyContext;
using lumo::StatusNode;
using lumo::upL_t;

template <typename wtype>
Series_BigFloatR<wtype>::Series_BigFloatR(std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> series_,
                                          lumo::SeriesCoefficients coefficients, upL_t p_, upL_t tds,
                                          bool reduced)
    : series(std::move(series_)),
      p(p_),
      sum(*series, coefficients, p_ + 2, tds, reduced),
      division(p_ + 2, tds),
      part_words(sum.output_words),
      product_words(std::max(sum.max_product_words, p_ + 16)) {
    const upL_t series_words = lumo::align_words<wtype>(sum.word_scratch);
    const upL_t division_words = 2 * part_words + lumo::align_words<wtype>(division.word_scratch);
    bytes = lumo::align_bytes(std::max(series_words * sizeof(wtype) + sum.byte_scratch,
                                       division_words * sizeof(wtype) + division.byte_scratch));
}

template <typename wtype>
BigFloat<wtype> Series_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status,
                                             lumo::SeriesObserver<wtype>* observer) const {
    Number N, D;
    fraction(ctx, status, N, D, observer);
    return quotient(ctx, status, N, D);
}

template <typename wtype>
void Series_BigFloatR<wtype>::fraction(const MultiplyContext& ctx, StatusNode& status, Number& N, Number& D,
                                       lumo::SeriesObserver<wtype>* observer) const {
    lumo::require_capacity("Series_BigFloatR::run()", ctx.scratch_bytes, bytes);
    AlignedBufferC scratch = ctx.buffer();
    wtype* words = scratch.spawn_words<wtype>(sum.word_scratch);
    sum.run(ctx.with_scratch(scratch), status, N, D, words, sum.word_scratch, observer);
}

template <typename wtype>
BigFloat<wtype> Series_BigFloatR<wtype>::quotient(const MultiplyContext& ctx, StatusNode& status,
                                                  const Number& N, const Number& D) const {
    AlignedBufferC buffer = ctx.buffer();
    auto* const start = buffer.spawn_words<wtype>(2 * part_words);
    const lumo::LargeDivisionStatus section(status);
    Number S(N.base, part_words);
    wtype* words = buffer.spawn_words<wtype>(division.word_scratch);
    division.run(ctx.with_scratch(buffer), status, S, N, D, words, division.word_scratch);
    if (S.base == start) return S;
    Number result(start, part_words);
    result.set_BigFloat(p + 2, S, ctx.parallel());
    return result;
}

template class Series_BigFloatR<std::uint32_t>;
template class Series_BigFloatR<std::uint64_t>;

}  // namespace velmora
