#include "velmora/constants/plans/lemniscate_agm.h"

#include <algorithm>

#include "lumo/functions/division_status.h"

namespace velmora {

using lumo::AlignedBufferC;
using lumo::BigFloat;
using lumo::MultiplyContext;
using lumo::StatusNode;
using lumo::upL_t;

template <typename wtype>
Lemniscate_AGM_BigFloatR<wtype>::Lemniscate_AGM_BigFloatR(int power_, upL_t p_, upL_t tds)
    : power(power_),
      p(p_ + 2),
      root(2, p, tds),
      mean(p, tds),
      pi(PiSeries::chudnovsky, power_ == -1 ? 1 : power_, p, tds, false),
      division(p, tds) {
    number_words = lumo::align_words<wtype>(std::max({mean.output_words, division.output_words, p + 8}));
    const auto with_numbers = [&](upL_t count, upL_t words, upL_t rest) {
        return (count * number_words + lumo::align_words<wtype>(words)) * sizeof(wtype) +
               lumo::align_bytes(rest);
    };
    bytes = std::max({with_numbers(1, 0, root.total_bytes()),
                      with_numbers(1, root.result_words() + mean.word_scratch, mean.byte_scratch),
                      with_numbers(1, 0, pi.total_bytes()),
                      with_numbers(3, division.word_scratch, division.byte_scratch)});
}

template <typename wtype>
upL_t Lemniscate_AGM_BigFloatR<wtype>::max_product_words() const {
    return std::max(pi.max_product_words(), 2 * p + 16);
}

template <typename wtype>
BigFloat<wtype> Lemniscate_AGM_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status,
                                                     lumo::SeriesObserver<wtype>* observer) const {
    lumo::require_capacity("Lemniscate_AGM_BigFloatR::run()", ctx.scratch_bytes, bytes);
    AlignedBufferC buffer = ctx.buffer();
    Number M(buffer.spawn_words<wtype>(number_words), number_words);
    {
        const Number S = root.run(ctx.with_scratch(buffer), status);
        AlignedBufferC scratch = buffer;
        scratch.spawn_words<wtype>(root.result_words());
        wtype* words = scratch.spawn_words<wtype>(mean.word_scratch);
        mean.run(ctx.with_scratch(scratch), status, M, S, p, words, mean.word_scratch);
    }
    const Number value = pi.run(ctx.with_scratch(buffer), status, observer);
    Number P(buffer.spawn_words<wtype>(number_words), number_words);
    P.set_BigFloat(p, value, ctx.parallel());
    P.mul_uW(2, ctx.parallel());
    Number Q(buffer.spawn_words<wtype>(number_words), number_words);
    const lumo::LargeDivisionStatus section(status);
    wtype* words = buffer.spawn_words<wtype>(division.word_scratch);
    division.run(ctx.with_scratch(buffer), status, Q, power == 1 ? P : M, power == 1 ? M : P, words,
                 division.word_scratch);
    return Q;
}

template class Lemniscate_AGM_BigFloatR<std::uint32_t>;
template class Lemniscate_AGM_BigFloatR<std::uint64_t>;

}  // namespace velmora
