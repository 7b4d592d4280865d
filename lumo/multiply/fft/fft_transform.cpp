#include "lumo/multiply/fft/fft_transform.h"

#include "lumo/multiply/fft/fft_chain.h"
#include "lumo/multiply/fft/fft_tables.h"

namespace lumo {

namespace {

/// Layers that run in one tile with the first and the last pass. Two, as rows that lie far apart share sets
/// of the caches; four where the blocks that are left would be much longer than the second cache.
unsigned top_layers(const FftSize& size) {
    if (size.depth() < 5) return 0;
    return size.vectors() <= upL_t(1) << 17 ? 2 : 4;
}

}  // namespace

FftTransform::FftTransform(const FftSize& size) : row(size), shape{} {
    const FftTables& tables = fft_tables();
    require(tables.bits >= size.limit_bits, "Twiddle tables are too short.", "FftTransform");
    shape.m = size.m;
    shape.depth = size.depth();
    shape.top = top_layers(size);
    shape.b = size.b;
    shape.scale = 2.0 / double(size.points());
    shape.coarse = tables.coarse[size.m][size.k];
    shape.fine = tables.fine[size.m][size.k];
    shape.odd = tables.odd[size.m][size.depth()];
    shape.roots = tables.roots;
    shape.nodes = tables.nodes;
}

void FftTransform::forward(const ParallelContext& ctx, double* array, const void* integer, upL_t bytes,
                           unsigned char* scratch, FftProbe* probe) const {
    FftChain chain(row, shape, ctx, scratch);
    chain.enter(array, integer, bytes, probe);
    chain.for_blocks([&](upL_t block) { chain.split_block(array, block); });
    chain.show(probe, FftPass::forward, array);
}

void FftTransform::inverse(const ParallelContext& ctx, double* array, const double* f, const double* g,
                           unsigned char* scratch, FftProbe* probe) const {
    FftChain chain(row, shape, ctx, scratch);
    chain.for_blocks([&](upL_t block) { chain.join_block(array, f, g, block); });
    chain.leave(array, probe);
}

void FftTransform::multiply(const ParallelContext& ctx, double* a, double* b, const void* A, upL_t A_bytes,
                            const void* B, upL_t B_bytes, unsigned char* scratch) const {
    FftChain chain(row, shape, ctx, scratch);
    chain.enter(a, A, A_bytes, nullptr);
    chain.enter(b, B, B_bytes, nullptr);
    chain.for_blocks([&](upL_t block) { chain.multiply_block(a, b, block); });
    chain.leave(a, nullptr);
}

void FftTransform::square(const ParallelContext& ctx, double* a, const void* A, upL_t A_bytes,
                          unsigned char* scratch) const {
    FftChain chain(row, shape, ctx, scratch);
    chain.enter(a, A, A_bytes, nullptr);
    chain.for_blocks([&](upL_t block) { chain.multiply_block(a, a, block); });
    chain.leave(a, nullptr);
}

}  // namespace lumo
