#include "lumo/functions/plan_sizes.h"
#include "lumo/functions/power.h"
#include "lumo/functions/power_steps.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "Power_uW_uL_BigFloatR::run()";

}  // namespace

template <typename wtype>
Power_uW_uL_BigFloatR<wtype>::Power_uW_uL_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)) {
    output_words = p + 5;
    word_scratch = align_words<wtype>(output_words);
    byte_scratch = float_product_bytes<wtype>(p + 2, tds);
}

template <typename wtype>
void Power_uW_uL_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode* status, BigFloat<wtype>& T,
                                       wtype w, upL_t n, upL_t precision, wtype* words,
                                       upL_t word_count) const {
    require_power_plan(LOCATION, precision, p, ctx.tds, tds);
    if (n <= 1 || w <= 1) {
        T.set_word(n == 0 ? 1 : w);
        return;
    }
    require_capacity(LOCATION, T.capacity, precision + 5);
    require_capacity(LOCATION, word_count, precision + 5);
    // A square may lose a word to a zero at its top, and the error grows by n.
    const upL_t working = precision + (n >> 32 == 0 ? 1 : 2);

    // Two stores in turn; the last square falls into T.
    BigFloat<wtype> other(words, word_count);
    BigFloat<wtype>* from = &T;
    BigFloat<wtype>* to = &other;
    if (std::bit_width(n) % 2 == 0) std::swap(from, to);
    from->set_word(w);
    walk_exponent(
        status, n,
        [&] {
            to->set_sqr(working, ctx, *from);
            to->strip_lzs_aligned();
            std::swap(from, to);
        },
        [&] { from->mul_uW(w, ctx.parallel()); });
}

template struct Power_uW_uL_BigFloatR<std::uint32_t>;
template struct Power_uW_uL_BigFloatR<std::uint64_t>;

}  // namespace lumo
