/// Tiles and tallies of the first and last pass, one set for each piece that may run at the same time.
#pragma once

#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/types/types.h"
#include "lumo/multiply/kernels/fft_kernels.h"

namespace lumo {

/// Lives on the stack of the product and is about 24 KB. A single piece of a small tile stays in it; all else
/// is cut from memory that the caller has to spare.
class FftWorkspace {
 public:
    FftWorkspace(const kernels::FftShape& shape, unsigned char* spare, upL_t spare_bytes)
        : rows(shape.rows()), small(rows <= SMALL_ROWS), memory(spare), fit(spare_bytes / piece_bytes()) {
        require(small || fit >= 1, "Invalid Function Parameters:   ", "FftWorkspace");
    }
    /// Most pieces.
    upL_t capacity() const { return fit > 1 ? fit : 1; }
    /// Makes room for so many, at most capacity().
    void prepare(upL_t pieces) {
        if (pieces == 1 && small) memory = local;
        for (upL_t i = 0; i < pieces; i++)
            tally(i).carry = reinterpret_cast<Carry*>(piece(i) + rows * TILE_BYTES);
    }
    double* tile(upL_t i) { return reinterpret_cast<double*>(piece(i)); }
    kernels::FftTally& tally(upL_t i) {
        return *reinterpret_cast<kernels::FftTally*>(piece(i) + rows * (TILE_BYTES + sizeof(Carry)));
    }

 private:
    using Carry = std::int64_t[kernels::FFT_STREAMS];
    static constexpr upL_t TILE_BYTES = kernels::FFT_TILE_ROW * sizeof(double);
    static constexpr upL_t SMALL_ROWS = 20;
    static constexpr upL_t ROW_BYTES = TILE_BYTES + sizeof(Carry);
    static constexpr upL_t LOCAL_BYTES = align_bytes(SMALL_ROWS * ROW_BYTES + sizeof(kernels::FftTally));
    upL_t piece_bytes() const { return align_bytes(rows * ROW_BYTES + sizeof(kernels::FftTally)); }
    unsigned char* piece(upL_t i) { return memory + i * piece_bytes(); }

    upL_t rows;
    bool small;
    unsigned char* memory;
    upL_t fit;
    alignas(ALIGNMENT_BYTES) unsigned char local[LOCAL_BYTES];
};

}  // namespace lumo
