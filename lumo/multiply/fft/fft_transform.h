/// The chain of passes of one FFT over bytes: it does not know words, which are little-endian bytes to it.
#pragma once

#include "lumo/multiply/fft/fft_probe.h"
#include "lumo/multiply/fft/fft_tables.h"
#include "lumo/multiply/kernels/fft_kernels.h"
#include "lumo/multiply/multiply_context.h"

namespace lumo {

/// One length. Refers to the tables that were in use when it was made.
class FftTransform {
 public:
    /// Tables for this size must be there.
    explicit FftTransform(const FftSize& size);

    const FftSize& size() const { return row; }

    /// array := image of the integer of `bytes` bytes, at most limit_bits / 8. `scratch` has scratch_bytes().
    void forward(const ParallelContext& ctx, double* array, const void* integer, upL_t bytes,
                 unsigned char* scratch, FftProbe* probe) const;
    /// scratch := product of the images f and g modulo 2^limit_bits + 1, as limit_bits / 8 bytes. `array` is
    /// overwritten and may be f or g; f == g squares. `scratch` has scratch_bytes(). The residue 2^limit_bits
    /// comes out as zero. Throws ConvolutionFailedException if rounding went wrong.
    void inverse(const ParallelContext& ctx, double* array, const double* f, const double* g,
                 unsigned char* scratch, FftProbe* probe) const;

 private:
    FftSize row;
    kernels::FftShape shape;
};

}  // namespace lumo
