/// The passes of one call, shared out among its threads: an FftTransform strings them together.
#pragma once

#include "lumo/multiply/fft/fft_probe.h"
#include "lumo/multiply/fft/fft_split.h"
#include "lumo/multiply/fft/fft_workspace.h"

namespace lumo {

class FftChain {
 public:
    /// `scratch` has size.scratch_bytes(): the result at its start, tiles behind. A rounding mode other than
    /// to nearest ends the program.
    FftChain(const FftSize& size, const kernels::FftShape& shape, const ParallelContext& ctx,
             unsigned char* scratch);

    /// array := first pass over the integer, and the layers that must be done before blocks can be tasks.
    void enter(double* array, const void* integer, upL_t bytes, FftProbe* probe);
    /// What is left of the forward transform, block by block.
    void split_block(double* array, upL_t block) const;
    /// array := inverse transform of the product of f and g, within one block. `array` may be f or g.
    void join_block(double* array, const double* f, const double* g, upL_t block) const;
    /// Both at once: a := inverse transform of a b, b is overwritten. a == b squares.
    void multiply_block(double* a, double* b, upL_t block) const;
    /// The result, from an array of joined blocks. Throws ConvolutionFailedException.
    void leave(double* array, FftProbe* probe);

    /// f(block) for all blocks, as tasks.
    template <typename F>
    void for_blocks(F&& f) const {
        split.tasks(row.m * blocks_a_part, f);
    }
    void show(FftProbe* probe, FftPass pass, double* array) const {
        if (probe) probe->after(pass, array, row.points());
    }

 private:
    /// From an integer; infinite if a value left the range in which that means anything.
    double largest_error();
    void resolve_carries();

    const FftSize& row;
    const kernels::FftShape& shape;
    const kernels::FftKernels& kernel;
    unsigned char* result;
    FftWorkspace work;
    FftSplit split;
    unsigned block_depth;
    upL_t blocks_a_part;
};

}  // namespace lumo
