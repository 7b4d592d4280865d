#include "lumo/multiply/fft/fft_chain.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/fft/fft_carry.h"
#include "lumo/multiply/fft/fft_operand.h"
#include "lumo/multiply/kernels/kernel_select.h"

namespace lumo {

using namespace kernels;

namespace {

/// A coefficient farther than this from an integer is not trusted.
constexpr double MAX_ERROR = 0.4375;

void check_rounding_mode() {
    if ((__builtin_ia32_stmxcsr() & 0x6000) != 0) fatal_error("The FPU Control Word has been corrupted.");
}

constexpr upL_t result_bytes(const FftSize& size) {
    return align_bytes(size.limit_bits / 8);
}

}  // namespace

FftChain::FftChain(const FftSize& size, const FftShape& fft_shape, const ParallelContext& ctx,
                   unsigned char* scratch)
    : row(size),
      shape(fft_shape),
      kernel(fft_kernels()),
      result(scratch),
      work(shape, scratch + result_bytes(size), size.scratch_bytes() - result_bytes(size)),
      split(ctx, size.limit_bits, shape.rows(), shape.depth - shape.top, work.capacity()),
      block_depth(shape.depth - shape.top - 2 * split.levels),
      blocks_a_part(upL_t(1) << (shape.top + 2 * split.levels)) {
    check_rounding_mode();
    work.prepare(split.pieces);
}

void FftChain::enter(double* array, const void* integer, upL_t bytes, FftProbe* probe) {
    const FftOperand operand = make_fft_operand(static_cast<const unsigned char*>(integer), bytes, row);
    split.ranges(shape.columns(), FFT_COLUMNS, [&](upL_t piece, upL_t from, upL_t to) {
        kernel.enter(shape, array, operand, work.tile(piece), from, to);
    });
    show(probe, FftPass::first, array);
    for (unsigned level = 0; level < split.levels; level++) {
        const upL_t nodes_a_part = upL_t(1) << (shape.top + 2 * level);
        const upL_t quarter = upL_t(1) << (shape.depth - shape.top - 2 * level - 2);
        split.nodes(row.m * nodes_a_part, quarter, [&](upL_t node, upL_t from, upL_t to) {
            kernel.forward_node(array + FFT_VECTOR * 4 * quarter * node, quarter, node % nodes_a_part,
                                shape.roots, from, to);
        });
    }
}

void FftChain::split_block(double* array, upL_t block) const {
    kernel.forward_block(array + (FFT_VECTOR << block_depth) * block, block_depth, block % blocks_a_part,
                         shape.roots);
}

void FftChain::join_block(double* array, const double* f, const double* g, upL_t block) const {
    const upL_t at = (FFT_VECTOR << block_depth) * block;
    kernel.inverse_block(array + at, f + at, g + at, block_depth, shape.nodes);
}

void FftChain::multiply_block(double* a, double* b, upL_t block) const {
    const upL_t at = (FFT_VECTOR << block_depth) * block;
    kernel.multiply_block(a + at, b + at, block_depth, block % blocks_a_part, shape.roots, shape.nodes);
}

void FftChain::leave(double* array, FftProbe* probe) {
    for (unsigned level = split.levels; level-- > 0;) {
        const unsigned joined = shape.depth - shape.top - 2 * level;
        const upL_t quarter = upL_t(1) << (joined - 2);
        split.nodes(shape.rows() << (2 * level), quarter, [&](upL_t node, upL_t from, upL_t to) {
            kernel.inverse_node(array + FFT_VECTOR * 4 * quarter * node, quarter, shape.nodes[joined], from,
                                to);
        });
    }
    show(probe, FftPass::inverse, array);
    split.ranges(shape.columns(), FFT_COLUMNS, [&](upL_t piece, upL_t from, upL_t to) {
        kernel.leave(shape, array, result, work.tile(piece), work.tally(piece), from, to);
    });
    const double error = largest_error();
    if (probe) probe->largest_error = error;
    if (!(error < MAX_ERROR)) {
        throw ConvolutionFailedException("FFT",
                                         "Coefficient is too large.\n    Error = " + std::to_string(error) +
                                             "\n    Limit = " + std::to_string(MAX_ERROR));
    }
    resolve_carries();
}

double FftChain::largest_error() {
    double error = 0;
    std::uint64_t range = 0;
    for (upL_t i = 0; i < split.pieces; i++) {
        for (double worst : work.tally(i).worst) error = std::max(error, std::abs(worst));
        for (std::uint64_t bits : work.tally(i).range) range |= bits;
    }
    return range >> 52 ? INFINITY : error;
}

void FftChain::resolve_carries() {
    const upL_t bytes = row.limit_bits / 8, stream_bytes = bytes / FFT_STREAMS;
    const upL_t row_bytes = shape.columns() / 8 * row.b;
    std::int64_t top = 0;
    for (upL_t piece = 0; piece < split.pieces; piece++) {
        const upL_t end = split.start(shape.columns(), FFT_COLUMNS, piece + 1) / 8 * row.b;
        for (upL_t r = 0; r < shape.rows(); r++)
            for (upL_t stream = 0; stream < FFT_STREAMS; stream++) {
                const upL_t place = stream * stream_bytes + r * row_bytes + end;
                const std::int64_t carry = work.tally(piece).carry[r][stream];
                top += place < bytes ? add_carry(result, bytes, place, carry) : carry;
            }
    }
    wrap_negative(result, bytes, top);
}

}  // namespace lumo
