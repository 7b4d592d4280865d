/// Products that share one factor, whose image is made once.
#pragma once

#include "lumo/numbers/objects/exact_float_transform.h"

namespace lumo {

/// Products up to here run word by word; a held transform saves nothing.
template <typename wtype>
inline constexpr upL_t SMALL_WORDS = 4992 / WordTraits<wtype>::bits;

/// Uses two arrays and the work area of the context's scratch, for products of factor.L + longest_other
/// words at most.
template <typename wtype>
class SharedFactor {
 public:
    SharedFactor(const MultiplyContext& ctx, const ExactFloat<wtype>& factor, upL_t longest_other)
        : helper(ctx, descriptor(factor.L + longest_other, ctx.tds), 2),
          held(helper.descriptor(), helper.array(1)) {
        held.forward(helper, factor);
    }
    void multiply(ExactFloat<wtype>& T, const ExactFloat<wtype>& A) const {
        ExactFloatTransformR<wtype>::mul_rf_xf(helper, T, A, held);
    }
    /// The product's bottom stands at `emin` where it would lie above it.
    void multiply(ExactFloat<wtype>& T, const ExactFloat<wtype>& A, spL_t emin) const {
        ExactFloatTransformR<wtype>::mul_rf_xf_exp(helper, T, A, held, emin);
    }
    void multiply_and_strip(ExactFloat<wtype>& T, const ExactFloat<wtype>& A) const {
        multiply(T, A);
        T.strip_lzs_aligned();
    }

 private:
    const TransformDescriptor<wtype>& descriptor(upL_t words, upL_t tds) {
        Multiply::params(transform, words + 2, tds);
        return *transform;
    }
    TransformHolder<wtype> transform;
    TransformHelper<wtype> helper;
    ExactFloatTransformR<wtype> held;
};

}  // namespace lumo
