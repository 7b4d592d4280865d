#include "lumo/series/bsr_block_b.h"

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/series/size_text.h"

namespace lumo {

template <typename wtype>
upL_t bsr_block_levels(upL_t words, upL_t tds) {
    // Forks of up to this many bits keep the working set of every thread near its share of the last cache.
    constexpr upL_t FORK_WORDS = (upL_t(1) << 26) / WordTraits<wtype>::bits;
    upL_t levels = 0;
    if (tds > 1) {
        while (words >> levels > FORK_WORDS) ++levels;
    }
    return levels;
}

template <typename wtype>
upL_t BSR_BlockB<wtype>::lower_words(const SeriesCommonP2B3<wtype>& series, Region range, upL_t levels) {
    upL_t words = series.words(range.s, range.e);
    for (upL_t i = 0; i < levels; ++i) words = series.half_words(words);
    return words;
}

template <typename wtype>
BSR_BlockB<wtype>::BSR_BlockB(const SeriesCommonP2B3<wtype>& series_, Region range_, upL_t tds_,
                              upL_t levels_)
    : result_words(0),
      byte_scratch(0),
      tds(tds_),
      series(series_),
      range(range_),
      levels(tds_ <= 1 ? 0 : levels_),
      block(series_, lower_words(series_, range_, levels), range_.terms(), std::max<upL_t>(tds_, 1)) {
    upL_t words = series.words(range.s, range.e);
    result_words = words;
    if (levels != 0) byte_scratch = bsr_merge_scratch<wtype>(words + 1, tds);
    // A right part starts above its left neighbour and needs all that its own recursion needs.
    upL_t above = 0;
    for (upL_t i = 0; i < levels; ++i) {
        words = series.half_words(words);
        above += align_words<wtype>(words);
    }
    result_words = align_words<wtype>(std::max(result_words, above + block.result_words));
    byte_scratch = align_bytes(std::max(byte_scratch, block.byte_scratch));
}

template <typename wtype>
void BSR_BlockB<wtype>::run(const MultiplyContext& ctx, StatusNode& status, Parts<wtype>& out,
                            ExactFloat<wtype> T) const {
    if (ctx.tds > tds)
        throw InvalidParametersException("BSR_BlockB::run()",
                                         "Attempted to run with a larger tds than the plan supports.");
    require_capacity("BSR_BlockB::run()", out.P.capacity, result_words);
    require_capacity("BSR_BlockB::run()", out.Q.capacity, result_words);
    if (!series.hyperdescent) require_capacity("BSR_BlockB::run()", out.R.capacity, result_words);
    require_capacity("BSR_BlockB::run()", T.capacity, result_words);
    require_capacity("BSR_BlockB::run()", ctx.scratch_bytes, byte_scratch);
    run_level(ctx, status, range, levels, out, T);
}

template <typename wtype>
void BSR_BlockB<wtype>::run_level(const MultiplyContext& ctx, StatusNode& status, Region region, upL_t level,
                                  Parts<wtype>& out, ExactFloat<wtype> T) const {
    const std::string size = digits_text<wtype>(series.result_words(region.s, region.e));
    if (region.terms() <= BSR_SERIAL_TERMS || level == 0) {
        StatusSection section(status, {{'B', "  > "}, {'Y', size}});
        block.run(ctx, region, out, T);
        return;
    }
    const upL_t m = series.split(region.s, region.e);
    Parts<wtype> left{out.P, out.Q, out.R, !series.hyperdescent};
    {
        StatusSection section(status, {{'G', "0"}});
        run_level(ctx, status, Region(region.s, m), level - 1, left, T);
    }
    Parts<wtype> right{free_space_above(left.P), free_space_above(left.Q), free_space_above(left.R),
                       out.need_R};
    {
        StatusSection section(status, {{'G', "1"}});
        run_level(ctx, status, Region(m, region.e), level - 1, right, T);
    }
    StatusSection section(status, {{'G', "-  "}, {'Y', size}});
    bsr_join(ctx, series, region, left, right, T, out);
}

template class BSR_BlockB<std::uint32_t>;
template class BSR_BlockB<std::uint64_t>;
template upL_t bsr_block_levels<std::uint32_t>(upL_t, upL_t);
template upL_t bsr_block_levels<std::uint64_t>(upL_t, upL_t);

}  // namespace lumo
