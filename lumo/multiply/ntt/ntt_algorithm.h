/// The number-theoretic transforms as algorithms of the tables.
#pragma once

#include "lumo/multiply/basic_algorithm.h"
#include "lumo/multiply/ntt/ntt_descriptor.h"

namespace lumo {

/// Products of at least one word. Partial products are exact: the words below the window are computed too.
/// With scratch for one array and a part of another, the second operand goes through by groups of primes.
/// Every product is checked; a wrong one is ConvolutionFailedException.
///
/// A `Transform` tells its IDENTITY, its lengths (sizes() by length, size_for(bits)) and their Footprint.
template <typename wtype, typename Transform>
class NttAlgorithm final : public BasicAlgorithm<wtype> {
 public:
    NttAlgorithm()
        : BasicAlgorithm<wtype>(Transform::IDENTITY.max_bits, Transform::IDENTITY.tag,
                                Transform::IDENTITY.name, Transform::IDENTITY.version, nullptr) {}

    /// Builds the roots for these lengths; without it the first product of its length does.
    void ensure_tables(upL_t length) const override;
    upL_t max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) const override;
    void params(TransformHolder<wtype>& out, upL_t length, upL_t tds) const override;
    void sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                     upL_t AL) const override;
    void mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                     const wtype* B, upL_t BL) const override;
    /// Bytes for any of these products in the small form.
    upL_t max_buffer_size(upL_t length, upL_t tds) const override;

 private:
    using Descriptor = NttDescriptor<wtype, Transform>;
};

}  // namespace lumo
