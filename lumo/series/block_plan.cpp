#include "lumo/series/block_plan.h"

#include <algorithm>

#include "lumo/series/bsr_block_t.h"
#include "lumo/series/plan_warning.h"

namespace lumo {
namespace {

/// The first m in (a, b] for which reached(m) holds, b if none does; reached is monotonic.
template <typename Predicate>
upL_t bisect(upL_t a, upL_t b, Predicate reached) {
    if (b - a <= 1) return b;
    upL_t lo = a;
    upL_t hi = b;
    while (hi - lo > 1) {
        const upL_t m = lo + (hi - lo) / 2;
        (reached(m) ? hi : lo) = m;
    }
    return hi;
}

/// How much longer than the precision a range must be for its cut into blocks to pay.
constexpr DoubleDouble WORTH_CUTTING(1.25);

}  // namespace

template <typename wtype>
upL_t equilibrium(const SeriesCommonP2B3<wtype>& series, upL_t b, upL_t a) {
    return bisect(a, b, [&](upL_t m) { return !(series.remaining(m, b) > series.block_size(a, m)); });
}

template <typename wtype>
upL_t cut(const SeriesCommonP2B3<wtype>& series, upL_t b, upL_t a, DoubleDouble limit) {
    return bisect(a, b, [&](upL_t m) { return !(limit > series.block_size(a, m)); });
}

template <typename wtype>
std::vector<Region> make_block_plan(const SeriesCommonP2B3<wtype>& series, upL_t first, upL_t end,
                                    upL_t limit_words) {
    const DoubleDouble limit = words_to_size<wtype>(limit_words);
    std::vector<Region> plan;
    for (upL_t a = first; a != end;) {
        // What is left of a few terms is cheaper whole than cut, and so is what is hardly longer than needed.
        const DoubleDouble rest = series.block_size(a, end);
        const bool whole = end - a <= BSR_SERIAL_TERMS ||
                           (limit * WORTH_CUTTING > rest && series.remaining(a, end) * WORTH_CUTTING > rest);
        const upL_t m = whole ? end : std::min(equilibrium(series, end, a), cut(series, end, a, limit));
        plan.emplace_back(a, m);
        watch_plan(plan.size());
        a = m;
    }
    check_plan(plan.size());
    return plan;
}

#define LUMO_INSTANTIATE(wtype)                                                     \
    template upL_t equilibrium(const SeriesCommonP2B3<wtype>&, upL_t, upL_t);       \
    template upL_t cut(const SeriesCommonP2B3<wtype>&, upL_t, upL_t, DoubleDouble); \
    template std::vector<Region> make_block_plan(const SeriesCommonP2B3<wtype>&, upL_t, upL_t, upL_t);
LUMO_INSTANTIATE(std::uint32_t)
LUMO_INSTANTIATE(std::uint64_t)
#undef LUMO_INSTANTIATE

}  // namespace lumo
