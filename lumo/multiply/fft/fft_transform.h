/// One length of the FFT, over bytes: it does not know words, which are little-endian bytes to it.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/multiply/fft/fft_probe.h"
#include "lumo/multiply/fft/fft_sizes.h"
#include "lumo/multiply/kernels/fft_kernels.h"

namespace lumo {

/// Refers to the tables that were in use when it was made. In all steps `scratch` has scratch_bytes() of the
/// size and arrays have array_bytes(), aligned to 128.
class FftTransform {
 public:
    /// Tables for this size must be there.
    explicit FftTransform(const FftSize& size);

    const FftSize& size() const { return row; }

    /// array := image of the integer of `bytes` bytes, at most limit_bits / 8.
    void forward(const ParallelContext& ctx, double* array, const void* integer, upL_t bytes,
                 unsigned char* scratch, FftProbe* probe) const;
    /// scratch := product of the images f and g modulo 2^limit_bits + 1, as limit_bits / 8 bytes. `array` is
    /// overwritten and may be f or g; f == g squares. The residue 2^limit_bits comes out as zero. Throws
    /// ConvolutionFailedException if rounding went wrong.
    void inverse(const ParallelContext& ctx, double* array, const double* f, const double* g,
                 unsigned char* scratch, FftProbe* probe) const;
    /// scratch := A B, or A^2, as inverse() leaves it. One chain touches less memory than forwards and an
    /// inverse: each block is split, multiplied and joined while it is in cache. `a` and `b` are working
    /// space.
    void multiply(const ParallelContext& ctx, double* a, double* b, const void* A, upL_t A_bytes,
                  const void* B, upL_t B_bytes, unsigned char* scratch) const;
    void square(const ParallelContext& ctx, double* a, const void* A, upL_t A_bytes,
                unsigned char* scratch) const;

 private:
    FftSize row;
    kernels::FftShape shape;
};

}  // namespace lumo
