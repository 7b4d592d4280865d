#include "lumo/multiply/fft/fft_transform.h"

#include <algorithm>
#include <cstring>

#include "lumo/multiply/fft/fft_carry.h"
#include "lumo/multiply/kernels/kernel_select.h"

namespace lumo {

using namespace kernels;

namespace {

/// Below this many bits a product is over before a second thread has warmed up.
constexpr upL_t PARALLEL_BITS = 1500000;
constexpr upL_t MAX_PIECES = 64;
/// Blocks of fewer vectors than 2^this are not cut further.
constexpr unsigned SMALLEST_TASK_DEPTH = 9;

void check_rounding_mode() {
    if ((__builtin_ia32_stmxcsr() & 0x6000) != 0) fatal_error("The FPU Control Word has been corrupted.");
}

/// How one product is cut: pieces of the passes over everything, and levels of nodes that are run one by
/// one before the blocks below them become tasks.
struct Split {
    BasicParallelizer& parallelizer;
    upL_t pieces = 1;
    unsigned levels = 0;

    Split(const ParallelContext& ctx, const FftSize& row)
        : parallelizer(ctx.tds > 1 ? *ctx.parallelizer : serial_parallelizer()) {
        if (ctx.tds <= 1 || row.limit_bits < PARALLEL_BITS) return;
        pieces = std::min(ctx.tds, MAX_PIECES);
        while ((upL_t(row.m) << (2 * levels)) < 2 * pieces &&
               row.depth() >= 2 * levels + 2 + SMALLEST_TASK_DEPTH)
            levels++;
    }

    /// f(from, to, piece) over [0, n), cut at multiples of `unit`.
    template <typename F>
    void ranges(upL_t n, upL_t unit, F&& f) const {
        if (pieces == 1) return f(upL_t(0), n, upL_t(0));
        const upL_t units = n / unit;
        parallel_for(parallelizer, 0, pieces,
                     [&](upL_t i) { f(units * i / pieces * unit, units * (i + 1) / pieces * unit, i); });
    }

    /// f(block) over n blocks.
    template <typename F>
    void blocks(upL_t n, F&& f) const {
        if (pieces == 1) {
            for (upL_t i = 0; i < n; i++) f(i);
        } else {
            parallel_for(parallelizer, 0, n, f);
        }
    }

    /// f(node, from, to) over `nodes` nodes of `columns` columns each.
    template <typename F>
    void nodes(upL_t count, upL_t columns, F&& f) const {
        const upL_t cuts = (pieces + count - 1) / count;
        blocks(count * cuts, [&](upL_t i) {
            const upL_t part = i % cuts;
            f(i / cuts, columns * part / cuts, columns * (part + 1) / cuts);
        });
    }
};

FftOperand view(const unsigned char* integer, upL_t bytes, const FftSize& row) {
    FftOperand a;
    a.bytes = integer;
    a.size = bytes;
    a.b = row.b;
    a.tail_start = bytes > 64 ? bytes - 64 : 0;
    std::memset(a.head, 0, sizeof(a.head));
    std::memset(a.tail, 0, sizeof(a.tail));
    std::memcpy(a.head + 1, integer, std::min<upL_t>(bytes, sizeof(a.head) - 1));
    std::memcpy(a.tail, integer + a.tail_start, bytes - a.tail_start);
    a.wraps = 8 * bytes == row.limit_bits && (integer[bytes - 1] & 0x80);
    a.real_only = 16 * bytes < row.limit_bits;
    return a;
}

}  // namespace

FftTransform::FftTransform(const FftSize& size)
    : row(size),
      roots(fft_tables().roots),
      nodes(fft_tables().nodes),
      odd(size.m == 1 ? nullptr : fft_tables().odd[size.m][size.depth()]),
      twist(fft_tables().twist[size.m][size.k]) {
    require(fft_tables().bits >= size.limit_bits, "Twiddle tables are too short.", "FftTransform");
}

void FftTransform::forward(const ParallelContext& ctx, double* array, const void* integer, upL_t bytes,
                           FftProbe* probe) const {
    check_rounding_mode();
    const FftKernels& kernel = fft_kernels();
    const Split split(ctx, row);
    const upL_t vectors = row.vectors(), part = upL_t(1) << row.depth();
    const FftOperand operand = view(static_cast<const unsigned char*>(integer), bytes, row);
    split.ranges(vectors, 8, [&](upL_t from, upL_t to, upL_t) {
        kernel.first_pass(array, vectors, operand, twist, from, to);
    });
    if (probe) probe->after(FftPass::first, array, row.points());
    if (row.m != 1)
        split.ranges(part, 1, [&](upL_t from, upL_t to, upL_t) {
            kernel.odd_forward(array, row.m, part, odd, from, to);
        });
    for (unsigned level = 0; level < split.levels; level++) {
        const upL_t quarter = part >> (2 * level + 2), nodes_a_part = upL_t(1) << (2 * level);
        split.nodes(row.m * nodes_a_part, quarter, [&](upL_t node, upL_t from, upL_t to) {
            kernel.forward_node(array + FFT_VECTOR * 4 * quarter * node, quarter, node % nodes_a_part, roots,
                                from, to);
        });
    }
    const unsigned depth = row.depth() - 2 * split.levels;
    const upL_t blocks_a_part = upL_t(1) << (2 * split.levels);
    split.blocks(row.m * blocks_a_part, [&](upL_t block) {
        kernel.forward_block(array + (FFT_VECTOR << depth) * block, depth, block % blocks_a_part, roots);
    });
    if (probe) probe->after(FftPass::forward, array, row.points());
}

void FftTransform::inverse(const ParallelContext& ctx, double* array, const double* f, const double* g,
                           unsigned char* integer, FftProbe* probe) const {
    check_rounding_mode();
    const FftKernels& kernel = fft_kernels();
    const Split split(ctx, row);
    const upL_t vectors = row.vectors(), part = upL_t(1) << row.depth();
    const unsigned depth = row.depth() - 2 * split.levels;
    split.blocks(upL_t(row.m) << (2 * split.levels), [&](upL_t block) {
        const upL_t at = (FFT_VECTOR << depth) * block;
        kernel.inverse_block(array + at, f + at, g + at, depth, nodes);
    });
    for (unsigned level = split.levels; level-- > 0;) {
        const upL_t quarter = part >> (2 * level + 2);
        split.nodes(upL_t(row.m) << (2 * level), quarter, [&](upL_t node, upL_t from, upL_t to) {
            kernel.inverse_node(array + FFT_VECTOR * 4 * quarter * node, quarter,
                                nodes[row.depth() - 2 * level], from, to);
        });
    }
    if (row.m != 1)
        split.ranges(part, 1, [&](upL_t from, upL_t to, upL_t) {
            kernel.odd_inverse(array, row.m, part, odd, from, to);
        });
    if (probe) probe->after(FftPass::inverse, array, row.points());

    const FftOutput output{integer, 2.0 / double(row.points()), row.b};
    FftTally tallies[MAX_PIECES];
    split.ranges(vectors, 8, [&](upL_t from, upL_t to, upL_t piece) {
        kernel.last_pass(array, vectors, output, twist, tallies[piece], from, to);
    });

    double error = 0;
    std::uint64_t overflow = 0;
    for (upL_t i = 0; i < split.pieces; i++) {
        error = std::max(error, tallies[i].error);
        overflow |= tallies[i].overflow;
    }
    if (probe) probe->largest_error = error;
    if (overflow != 0 || !(error < 0.4375))
        throw ConvolutionFailedException("FFT", "Coefficient is too large.");

    const upL_t bytes = row.limit_bits / 8, stride = bytes / FFT_STREAMS;
    std::int64_t top = 0;
    for (upL_t stream = 0; stream < FFT_STREAMS; stream++)
        for (upL_t i = 0; i < split.pieces; i++) {
            const upL_t units = vectors / 8;
            const upL_t offset = stream * stride + units * (i + 1) / split.pieces * row.b;
            const std::int64_t carry = tallies[i].carry[stream];
            top += offset < bytes ? add_carry(integer, bytes, offset, carry) : carry;
        }
    wrap_negative(integer, bytes, top);
}

}  // namespace lumo
