/// The floating-point FFT as an algorithm of the tables: "FFT".
#pragma once

#include "lumo/multiply/basic_algorithm.h"
#include "lumo/multiply/fft/fft_descriptor.h"

namespace lumo {

/// Products of at least one word. Partial products are exact: the words below the window are computed too.
template <typename wtype>
class FftAlgorithm final : public BasicAlgorithm<wtype> {
 public:
    FftAlgorithm()
        : BasicAlgorithm<wtype>(FFT_MAX_BITS, "FFT", "Floating-Point FFT", "FFTv3", "Short-Vector FMA") {}

    void ensure_tables(upL_t length) const override;
    upL_t max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) const override;
    void params(TransformHolder<wtype>& out, upL_t length, upL_t tds) const override;
    void sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                     upL_t AL) const override;
    void mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                     const wtype* B, upL_t BL) const override;
};

}  // namespace lumo
