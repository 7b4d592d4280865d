/// Constants and roots of one prime in the form of one field: built ahead in a planned buffer, or when first
/// asked for.
#pragma once

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo {

/// Prime `index` of vt3_prime_factors() with roots for transforms of up to 2^levels elements. Thread-safe;
/// allocates only when the prime has no table yet or too short a one.
const kernels::Vt3Prime& vt3_prime_table(unsigned index, kernels::Vt3Form form, unsigned levels);

/// Bytes of roots that the transforms of all lengths up to `bits` need.
upL_t vt3_table_bytes(upL_t bits);
/// Builds these tables, for the kernels in use, in a buffer of vt3_table_bytes() that the caller keeps alive
/// until release_vt3_tables(). Neither is thread-safe, and no transform may be alive at the release.
void build_vt3_tables(AlignedBufferC buffer, upL_t bits, const ParallelContext& ctx);
void release_vt3_tables();

}  // namespace lumo
