/// How one transform is shared out among threads.
#pragma once

#include <algorithm>

#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/multiply/fft/fft_sizes.h"

namespace lumo {

struct FftSplit {
    /// Below this many bits a product is over before a second thread has warmed up.
    static constexpr upL_t MIN_BITS = 1500000;
    /// Blocks of 2^this vectors are not cut further.
    static constexpr unsigned MIN_DEPTH = 9;

    BasicParallelizer& parallelizer;
    upL_t pieces = 1;     ///< of the passes over all columns
    unsigned levels = 0;  ///< radix-4 levels run one by one before the blocks below them become tasks

    /// `blocks` blocks of 2^depth vectors stand after the first pass; at most `max_pieces` pieces.
    FftSplit(const ParallelContext& ctx, upL_t bits, upL_t blocks, unsigned depth, upL_t max_pieces)
        : parallelizer(ctx.runner()) {
        if (ctx.tds <= 1 || bits < MIN_BITS) return;
        pieces = std::max<upL_t>(1, std::min(ctx.tds, max_pieces));
        while ((blocks << (2 * levels)) < 2 * pieces && depth >= 2 * (levels + 1) + MIN_DEPTH) levels++;
    }

    /// Where piece i of n units starts.
    upL_t start(upL_t n, upL_t unit, upL_t i) const { return n / unit * i / pieces * unit; }

    /// f(piece, from, to) over [0, n), cut at multiples of `unit`.
    template <typename F>
    void ranges(upL_t n, upL_t unit, F&& f) const {
        tasks(pieces, [&](upL_t i) { f(i, start(n, unit, i), start(n, unit, i + 1)); });
    }

    /// f(task) for n tasks.
    template <typename F>
    void tasks(upL_t n, F&& f) const {
        if (pieces == 1) {
            for (upL_t i = 0; i < n; i++) f(i);
        } else {
            parallel_for(parallelizer, 0, n, f);
        }
    }

    /// f(node, from, to) over `count` nodes of `columns` columns each.
    template <typename F>
    void nodes(upL_t count, upL_t columns, F&& f) const {
        const upL_t cuts = (pieces + count - 1) / count;
        tasks(count * cuts, [&](upL_t i) {
            const upL_t cut = i % cuts;
            f(i / cuts, columns * cut / cuts, columns * (cut + 1) / cuts);
        });
    }
};

}  // namespace lumo
