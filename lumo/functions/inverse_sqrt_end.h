/// Inverse square roots at tiny precisions (p <= 10), where transforms do not pay.
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/functions/function_plan.h"
#include "lumo/numbers/objects/big_float.h"

namespace lumo {

template <typename wtype>
struct InvsqrtFloat_BigFloatR_E : FunctionPlan {
    InvsqrtFloat_BigFloatR_E(upL_t p, upL_t tds);
    void run(const MultiplyContext& ctx, BigFloat<wtype>& T, const BigFloat<wtype>& x, upL_t precision,
             wtype* words, upL_t word_count) const;
};

template <typename wtype>
struct InvsqrtWord_BigFloatR_E : InvsqrtFloat_BigFloatR_E<wtype> {
    using InvsqrtFloat_BigFloatR_E<wtype>::InvsqrtFloat_BigFloatR_E;
    void run(const MultiplyContext& ctx, BigFloat<wtype>& T, wtype x, upL_t precision, wtype* words,
             upL_t word_count) const;
};

}  // namespace lumo
