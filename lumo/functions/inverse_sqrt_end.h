/// Inverse square roots at tiny precisions (p <= 10), where transforms do not pay.
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/numbers/objects/big_float.h"

namespace lumo {

template <typename wtype>
struct InvsqrtFloat_BigFloatR_E {
    upL_t p;
    upL_t tds;
    upL_t output_words;
    upL_t word_scratch;
    upL_t byte_scratch;
    InvsqrtFloat_BigFloatR_E(upL_t p, upL_t tds);
    void run(const MultiplyContext& ctx, BigFloat<wtype>& T, const BigFloat<wtype>& x, upL_t precision,
             wtype* words, upL_t word_count) const;
};

template <typename wtype>
struct InvsqrtWord_BigFloatR_E : InvsqrtFloat_BigFloatR_E<wtype> {
    InvsqrtWord_BigFloatR_E(upL_t p_, upL_t tds_) : InvsqrtFloat_BigFloatR_E<wtype>(p_, tds_) {}
    void run(const MultiplyContext& ctx, BigFloat<wtype>& T, wtype x, upL_t precision, wtype* words,
             upL_t word_count) const;
};

}  // namespace lumo
