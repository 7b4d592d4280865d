/// Products that share one factor, whose image is made once.
#pragma once

#include <algorithm>
#include <limits>
#include <optional>

#include "lumo/multiply/basecase/basecase.h"
#include "lumo/numbers/objects/exact_float_transform.h"

namespace lumo {

/// Products up to here are made directly under some set of kernels: what room they are given.
template <typename wtype>
inline constexpr upL_t SMALL_WORDS = Basecase::MOST_DIRECT_BITS / WordTraits<wtype>::bits;

/// Products up to here are made directly under the active set; a held transform saves nothing.
template <typename wtype>
upL_t small_words() {
    return std::max<upL_t>(4992 / WordTraits<wtype>::bits, Basecase::direct_words<wtype>());
}

/// For products of factor.L + longest_other words at most. With two arrays and the work area in the context's
/// scratch the image is kept; with less, at least what ExactFloat::set_mul_small() needs, every product makes
/// it again in parts, and the factor must stay as it is. Products beyond small_words() may stand on their
/// operands.
template <typename wtype>
class SharedFactor {
 public:
    SharedFactor(const MultiplyContext& ctx_, const ExactFloat<wtype>& factor_, upL_t longest_other)
        : ctx(ctx_), factor(factor_) {
        Multiply::params(transform, factor.L + longest_other + 2, ctx.tds);
        if (ctx.scratch_bytes < TransformHelper<wtype>::bytes(*transform, 2)) return;
        helper.emplace(ctx, *transform, 2);
        held = ExactFloatTransformR<wtype>(*transform, helper->array(1));
        held.forward(*helper, factor);
    }
    void multiply(ExactFloat<wtype>& T, const ExactFloat<wtype>& A) const { multiply(T, A, NO_EXTENSION); }
    /// The product's bottom stands at `emin` where it would lie above it.
    void multiply(ExactFloat<wtype>& T, const ExactFloat<wtype>& A, spL_t emin) const {
        if (helper)
            ExactFloatTransformR<wtype>::mul_rf_xf(*helper, T, A, held, emin);
        else
            T.set_mul_small(ctx, A, factor, emin);
    }
    void multiply_and_strip(ExactFloat<wtype>& T, const ExactFloat<wtype>& A) const {
        multiply(T, A);
        T.strip_lzs_aligned();
    }

 private:
    static constexpr spL_t NO_EXTENSION = std::numeric_limits<spL_t>::max();

    const MultiplyContext ctx;
    const ExactFloat<wtype> factor;
    TransformHolder<wtype> transform;
    std::optional<TransformHelper<wtype>> helper;
    ExactFloatTransformR<wtype> held;
};

}  // namespace lumo
