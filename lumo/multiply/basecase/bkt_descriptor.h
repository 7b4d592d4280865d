/// Short products behind the interface of a transform: the image of an operand is the operand, and all work
/// is done by the inverse. The ring is that of integers modulo 2^length_bits - 1: a long product wraps with
/// a plus sign. So operands that are kept as images work at every size.
#pragma once

#include "lumo/multiply/transform_descriptor.h"

namespace lumo {

template <typename wtype>
class BktDescriptor final : public TransformDescriptor<wtype> {
 public:
    explicit BktDescriptor(upL_t length);

    bool same_transform(const TransformDescriptor<wtype>& other) const override;
    void forward(const MultiplyContext& ctx, const wtype* A, upL_t AL, void* image) const override;
    void inverse_fsqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out,
                      const void* F) const override;
    void inverse_fmul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out, const void* F,
                      const void* G) const override;
};

}  // namespace lumo
