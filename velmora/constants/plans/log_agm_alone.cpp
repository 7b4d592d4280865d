#include "velmora/constants/plans/log_agm_alone.h"

#include <algorithm>

#include "velmora/constants/log.h"

namespace velmora {

using lumo::AlignedBufferC;
using lumo::MultiplyContext;
using lumo::StatusNode;
using lumo::StatusSection;
using lumo::upL_t;

namespace {

/// Words of Pi and ln 2 beyond the precision: one is their integer part, and the factor m takes up to two.
constexpr upL_t GUARD_WORDS = 3;

}  // namespace

template <typename wtype>
Log_AGM_alone_BigFloatR<wtype>::Log_AGM_alone_BigFloatR(upL_t p, upL_t tds)
    : log(p, tds),
      pi(PiSeries::chudnovsky, 1, p + GUARD_WORDS, tds, false),
      log2(Log2_Machin_BigFloatR<wtype>(p + GUARD_WORDS, tds)) {
    const auto with_numbers = [&](upL_t count, upL_t words, upL_t rest) {
        return (count * log.number_words + lumo::align_words<wtype>(words)) * sizeof(wtype) +
               lumo::align_bytes(rest);
    };
    bytes = std::max({with_numbers(1, log.quotient_scratch, log.byte_scratch),
                      with_numbers(1, 0, pi.total_bytes()), with_numbers(3, 0, log.byte_scratch),
                      with_numbers(2, 0, log2.total_bytes())});
}

template <typename wtype>
upL_t Log_AGM_alone_BigFloatR<wtype>::max_product_words() const {
    return std::max({pi.max_product_words(), log2.max_product_words(), 2 * log.mean.p + 16});
}

template <typename wtype>
lumo::BigFloat<wtype> Log_AGM_alone_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status,
                                                          const Number& x,
                                                          lumo::SeriesObserver<wtype>* pi_observer,
                                                          lumo::SeriesObserver<wtype>* log2_observer) const {
    // All pieces at once, before the first is cut.
    lumo::require_capacity("AlignedBufferC::spawn_words()", ctx.scratch_bytes, bytes);
    const upL_t n = log.number_words;
    AlignedBufferC buffer = ctx.buffer();
    Number A(buffer.spawn_words<wtype>(n), n);
    const lumo::spL_t m = [&] {
        AlignedBufferC scratch = buffer;
        wtype* words = scratch.spawn_words<wtype>(log.quotient_scratch);
        return log.quotient("Log_AGM_alone_BigFloatR::run()", ctx.with_scratch(scratch), status, A, x, words,
                            log.quotient_scratch);
    }();
    {
        const Number value = pi.run(ctx.with_scratch(buffer), status, pi_observer);
        AlignedBufferC rest = buffer;
        Number P(rest.spawn_words<wtype>(n), n);
        P.set_BigFloat(log.p + GUARD_WORDS, value, ctx.parallel());
        Number product(rest.spawn_words<wtype>(n), n);
        log.times_half_pi(ctx.with_scratch(rest), status, product, A, P);
        A.set_BigFloat(log.p + GUARD_WORDS, product, ctx.parallel());
    }
    Number U(buffer.spawn_words<wtype>(n), n);
    const Number value = [&] {
        const StatusSection section(status, {{'G', "Log(2)...  "}});
        return log2.run(ctx.with_scratch(buffer), status, log2_observer);
    }();
    // The difference may stand where ln 2 stood.
    Number T(buffer.spawn_words<wtype>(n), n);
    log.finish(ctx, status, T, A, m, value, U);
    return T;
}

template class Log_AGM_alone_BigFloatR<std::uint32_t>;
template class Log_AGM_alone_BigFloatR<std::uint64_t>;

}  // namespace velmora
