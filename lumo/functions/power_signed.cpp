#include "lumo/functions/plan_sizes.h"
#include "lumo/functions/power.h"

namespace lumo {

template <typename wtype>
Power_uW_sL_BigFloatR<wtype>::Power_uW_sL_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)), power(p_, tds_), reciprocal(p_, tds_) {
    output_words = std::max(power.output_words, reciprocal.output_words);
    word_scratch =
        align_words<wtype>(power.output_words) + std::max(power.word_scratch, reciprocal.word_scratch);
    byte_scratch = std::max(power.byte_scratch, reciprocal.byte_scratch);
}

template <typename wtype>
void Power_uW_sL_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T,
                                       wtype w, spL_t n, upL_t precision, wtype* words,
                                       upL_t word_count) const {
    if (n >= 0) {
        power.run(ctx, &status, T, w, static_cast<upL_t>(n), precision, words, word_count);
        return;
    }
    const upL_t whole_words = align_words<wtype>(precision + 5);
    require_capacity("BigFloatR()", word_count, whole_words);
    BigFloat<wtype> whole(words, whole_words);
    words += whole_words;
    word_count -= whole_words;
    power.run(ctx, &status, whole, w, upL_t(0) - static_cast<upL_t>(n), precision, words, word_count);
    reciprocal.run(ctx, status, T, whole, precision, words, word_count);
}

template struct Power_uW_sL_BigFloatR<std::uint32_t>;
template struct Power_uW_sL_BigFloatR<std::uint64_t>;

}  // namespace lumo
