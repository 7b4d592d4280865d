/// Twiddle tables of the floating-point FFT: one set for the process, shared by both word types, read-only
/// while products run. What each table holds is told at FftShape.
#pragma once

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/multiply/fft/fft_sizes.h"

namespace lumo {

struct FftTables {
    static constexpr unsigned MAX_DEPTH = 20;
    static constexpr unsigned MAX_K = 24;
    upL_t bits = 0;                     ///< products that the tables serve; 0 when there are none
    const double* roots = nullptr;      ///< forward roots
    const double* nodes[MAX_DEPTH]{};   ///< inverse nodes by depth; at 3 the one root E(1/8)
    const double* odd[6][MAX_DEPTH]{};  ///< radix 3 and 5 by m and depth
    const double* coarse[6][MAX_K]{};   ///< twists by m and k
    const double* fine[6][MAX_K]{};
};

/// The set in use.
const FftTables& fft_tables();

/// Bytes of tables for products up to `bits`; a multiple of 128.
upL_t fft_table_bytes(upL_t bits);
/// Builds tables in a buffer that the caller keeps until release_fft_tables(); they replace those in use.
/// Throws BufferTooSmallException. Not while products run, nor while descriptors exist.
void build_fft_tables(AlignedBufferC buffer, upL_t bits, const ParallelContext& ctx);
void release_fft_tables();
/// Grows the tables on the general allocator if they are too short for `bits`.
void ensure_fft_tables(upL_t bits);

}  // namespace lumo
