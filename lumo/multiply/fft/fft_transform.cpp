#include "lumo/multiply/fft/fft_transform.h"

#include <algorithm>
#include <cmath>

#include "lumo/multiply/fft/fft_carry.h"
#include "lumo/multiply/fft/fft_operand.h"
#include "lumo/multiply/fft/fft_split.h"
#include "lumo/multiply/fft/fft_workspace.h"
#include "lumo/multiply/kernels/kernel_select.h"

namespace lumo {

using namespace kernels;

namespace {

/// A coefficient farther than this from an integer is not trusted.
constexpr double MAX_ERROR = 0.4375;

void check_rounding_mode() {
    if ((__builtin_ia32_stmxcsr() & 0x6000) != 0) fatal_error("The FPU Control Word has been corrupted.");
}

/// Layers that run in one tile with the first and the last pass: as many as leave blocks that fit the second
/// cache, in a tile that fits the first if the transform is small.
unsigned top_layers(unsigned m, unsigned depth) {
    if (depth < 5) return 0;
    if (depth < 7) return 2;
    if (m == 1) return depth <= 17 ? 4 : 6;
    return depth <= 12 ? 2 : depth <= 15 ? 4 : 6;
}

/// Largest distance from an integer; infinite if a value left the range in which that means anything.
double largest_error(FftWorkspace& work, upL_t pieces) {
    double error = 0;
    std::uint64_t range = 0;
    for (upL_t i = 0; i < pieces; i++) {
        for (double worst : work.tally(i).worst) error = std::max(error, std::abs(worst));
        for (std::uint64_t bits : work.tally(i).range) range |= bits;
    }
    return range >> 52 ? INFINITY : error;
}

}  // namespace

FftTransform::FftTransform(const FftSize& size) : row(size), shape{} {
    const FftTables& tables = fft_tables();
    require(tables.bits >= size.limit_bits, "Twiddle tables are too short.", "FftTransform");
    shape.m = size.m;
    shape.depth = size.depth();
    shape.top = top_layers(size.m, size.depth());
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
    check_rounding_mode();
    const FftKernels& kernel = fft_kernels();
    const unsigned depth = shape.depth - shape.top;
    FftWorkspace work(shape, scratch, row.scratch_bytes());
    const FftSplit split(ctx, row.limit_bits, shape.rows(), depth, work.capacity());
    work.prepare(split.pieces);
    const FftOperand operand = make_fft_operand(static_cast<const unsigned char*>(integer), bytes, row);
    split.ranges(shape.columns(), FFT_COLUMNS, [&](upL_t piece, upL_t from, upL_t to) {
        kernel.enter(shape, array, operand, work.tile(piece), from, to);
    });
    if (probe) probe->after(FftPass::first, array, row.points());

    // A block's index within its part decides its roots.
    upL_t blocks = upL_t(1) << shape.top;
    for (unsigned level = 0; level < split.levels; level++, blocks *= 4) {
        const upL_t quarter = upL_t(1) << (depth - 2 * level - 2);
        split.nodes(row.m * blocks, quarter, [&](upL_t node, upL_t from, upL_t to) {
            kernel.forward_node(array + FFT_VECTOR * 4 * quarter * node, quarter, node % blocks, shape.roots,
                                from, to);
        });
    }
    const unsigned rest = depth - 2 * split.levels;
    split.tasks(row.m * blocks, [&](upL_t block) {
        kernel.forward_block(array + (FFT_VECTOR << rest) * block, rest, block % blocks, shape.roots);
    });
    if (probe) probe->after(FftPass::forward, array, row.points());
}

void FftTransform::inverse(const ParallelContext& ctx, double* array, const double* f, const double* g,
                           unsigned char* scratch, FftProbe* probe) const {
    check_rounding_mode();
    const FftKernels& kernel = fft_kernels();
    const unsigned depth = shape.depth - shape.top;
    const upL_t bytes = row.limit_bits / 8, room = align_bytes(bytes);
    FftWorkspace work(shape, scratch + room, row.scratch_bytes() - room);
    const FftSplit split(ctx, row.limit_bits, shape.rows(), depth, work.capacity());
    work.prepare(split.pieces);

    const unsigned rest = depth - 2 * split.levels;
    upL_t blocks = shape.rows() << (2 * split.levels);
    split.tasks(blocks, [&](upL_t block) {
        const upL_t at = (FFT_VECTOR << rest) * block;
        kernel.inverse_block(array + at, f + at, g + at, rest, shape.nodes);
    });
    for (unsigned level = split.levels; level-- > 0;) {
        blocks /= 4;
        const unsigned joined = depth - 2 * level;
        const upL_t quarter = upL_t(1) << (joined - 2);
        split.nodes(blocks, quarter, [&](upL_t node, upL_t from, upL_t to) {
            kernel.inverse_node(array + FFT_VECTOR * 4 * quarter * node, quarter, shape.nodes[joined], from,
                                to);
        });
    }
    if (probe) probe->after(FftPass::inverse, array, row.points());

    split.ranges(shape.columns(), FFT_COLUMNS, [&](upL_t piece, upL_t from, upL_t to) {
        kernel.leave(shape, array, scratch, work.tile(piece), work.tally(piece), from, to);
    });
    const double error = largest_error(work, split.pieces);
    if (probe) probe->largest_error = error;
    if (!(error < MAX_ERROR)) throw ConvolutionFailedException("FFT", "Coefficient is too large.");

    std::int64_t top = 0;
    for (upL_t stream = 0; stream < FFT_STREAMS; stream++)
        for (upL_t r = 0; r < shape.rows(); r++)
            for (upL_t piece = 0; piece < split.pieces; piece++) {
                const upL_t end = stream * shape.vectors() + r * shape.columns() +
                                  split.start(shape.columns(), FFT_COLUMNS, piece + 1);
                const std::int64_t carry = work.tally(piece).carry[r][stream];
                top += end < row.points() ? add_carry(scratch, bytes, end / 8 * row.b, carry) : carry;
            }
    wrap_negative(scratch, bytes, top);
}

}  // namespace lumo
