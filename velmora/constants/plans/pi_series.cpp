#include "velmora/constants/plans/pi_series.h"

#include <algorithm>

#include "lumo/multiply/multiply.h"
#include "velmora/constants/series/series_pi.h"

namespace velmora {
namespace {

using lumo::AlignedBufferC;
using lumo::BigFloat;
using lumo::MultiplyContext;
using lumo::StatusNode;
using lumo::StatusSection;
using lumo::upL_t;

struct PiFormula {
    lumo::SeriesCoefficients coefficients;  ///< the series' power is the opposite of the constant's
    unsigned radicand;
};

PiFormula formula(PiSeries series, int power) {
    if (series == PiSeries::chudnovsky)
        return {{1, 13591409, power >= 1 ? 4270934400 : 426880, -power}, 10005};
    if (power >= 1) return {{1, 1103, 9801, -power}, 8};
    return {{4, 4412, 9801, -power}, 2};
}

template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> make_series(PiSeries series) {
    if (series == PiSeries::chudnovsky) return std::make_unique<SeriesPiChudnovsky<wtype>>();
    return std::make_unique<SeriesPiRamanujan<wtype>>();
}

}  // namespace

template <typename wtype>
Pi_Series_BigFloatR<wtype>::Pi_Series_BigFloatR(PiSeries which, int power, upL_t p_, upL_t tds_, bool reduced)
    : radicand(formula(which, power).radicand),
      p(p_),
      tds(tds_),
      series(make_series<wtype>(which), formula(which, power).coefficients, p_, tds_, reduced),
      root(p_ + 2, tds_) {
    const auto words_to_bytes = [](upL_t words) { return words * sizeof(wtype); };
    root_words = lumo::align_words<wtype>(root.output_words);
    output_words = lumo::align_words<wtype>(p + 4);
    // With room for two parts of the second image the products spend less time cutting their operands.
    lumo::BufferSizes sizes;
    lumo::Multiply::max_buffer_sizes<wtype>(sizes, 2 * p + 12, tds);
    product_bytes = lumo::align_bytes(lumo::Multiply::max_buffer_size<wtype>(2 * p + 12, tds, true)) +
                    (reduced ? 0 : lumo::align_bytes(sizes.least_part()));
    product_words = std::max(series.max_product_words(), 2 * p + 12);

    const upL_t kept = series.output_words() + root_words;
    const upL_t root_bytes =
        words_to_bytes(kept + lumo::align_words<wtype>(root.word_scratch)) + root.byte_scratch;
    const upL_t last_bytes = words_to_bytes(kept + output_words) + product_bytes;
    bytes = lumo::align_bytes(std::max({series.total_bytes(), root_bytes, last_bytes}));
}

template <typename wtype>
BigFloat<wtype> Pi_Series_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status,
                                                lumo::SeriesObserver<wtype>* observer) const {
    lumo::require_capacity("Pi_Series_BigFloatR::run()", ctx.scratch_bytes, bytes);
    const Number S = series.run(ctx, status, observer);

    AlignedBufferC buffer = ctx.buffer();
    buffer.spawn_words<wtype>(series.output_words());
    Number I(buffer.spawn_words<wtype>(root_words), root_words);
    {
        StatusSection section(status, {{'G', "Large Invsqrt...  "}});
        AlignedBufferC scratch = buffer;
        wtype* words = scratch.spawn_words<wtype>(root.word_scratch);
        root.run(ctx.with_scratch(scratch), status, I, radicand, p + 2, words, root.word_scratch);
    }
    StatusSection section(status, {{'G', "Large Multiply...  "}});
    Number T(buffer.spawn_words<wtype>(output_words), output_words);
    // Takes what there is: the second operand's image is made in as few parts as the buffer allows.
    T.set_mul_small(p, ctx.with_scratch(buffer), S, I);
    return T;
}

template class Pi_Series_BigFloatR<std::uint32_t>;
template class Pi_Series_BigFloatR<std::uint64_t>;

}  // namespace velmora
