/// The floating-point FFT of one length as a transform of words: multiplies modulo 2^length_bits + 1.
/// A product that wraps wraps negatively. Source: right-angle convolution, Crandall and Fagin (1994);
/// balanced pieces, Crandall and Pomerance.
#pragma once

#include "lumo/multiply/fft/fft_transform.h"
#include "lumo/multiply/transform_descriptor.h"

namespace lumo {

template <typename wtype>
class FftDescriptor final : public TransformDescriptor<wtype> {
 public:
    /// The shortest row of at least `bits`. The tables must reach it. Throws LimitExceededException.
    explicit FftDescriptor(upL_t product_bits) : FftDescriptor(fft_size_for(product_bits)) {}
    explicit FftDescriptor(const FftSize& size);

    const FftSize& size() const { return transform.size(); }
    /// Lets `probe` look into every later step of this descriptor; null ends it.
    void observe(FftProbe* new_probe) { probe = new_probe; }

    bool same_transform(const TransformDescriptor<wtype>& other) const override;
    void forward(const MultiplyContext& ctx, const wtype* A, upL_t AL, void* image) const override;
    void inverse_fsqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out,
                      const void* F) const override;
    void inverse_fmul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out, const void* F,
                      const void* G) const override;

    /// T := window of A^2 or A B in one go, faster than by images. `a` and `b` are working space of one array
    /// each. Operands as in forward().
    void sqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL, void* a) const;
    void mul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL, const wtype* B,
             upL_t BL, void* a, void* b) const;

 private:
    void require_operand(const char* location, const MultiplyContext& ctx, upL_t length) const;
    void require_window(const char* location, const MultiplyContext& ctx, upL_t s, upL_t L) const;
    /// Words [s, L) of the result in the scratch.
    void copy_window(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L) const;

    FftTransform transform;
    FftProbe* probe = nullptr;
};

}  // namespace lumo
