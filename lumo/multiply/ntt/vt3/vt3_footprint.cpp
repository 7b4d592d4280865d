#include "lumo/multiply/ntt/vt3/vt3_footprint.h"

#include <algorithm>

namespace lumo {

namespace {

/// Less than this many bytes of residues is not worth a task.
constexpr upL_t LEAST_TASK_BYTES = upL_t(1) << 17;

}  // namespace

Vt3Footprint::Vt3Footprint(const Vt3Size& size, upL_t tds) {
    using namespace kernels;
    const Vt3Shape shape = size.shape();
    prime = 8 * shape.array_words();
    image = align_bytes(shape.n * prime) + ALIGNMENT_BYTES;
    const upL_t worth = shape.n * prime / LEAST_TASK_BYTES;
    grid.rows = shape.rows();
    grid.tiles = shape.columns() / VT3_COLUMNS;
    grid.pieces = std::max(upL_t(1), std::min({tds, grid.tiles, worth, NTT_MOST_PIECES}));
    grid.run_bytes = shape.run_bytes();
    grid.tile_bytes = 8 * shape.n * shape.tile_words();
    twist = align_bytes(16 * shape.h());
    group = align_bytes(8 * shape.group_words);
    scratch = shape.n * twist + std::max(grid.scratch_bytes(vt3_carry_words(size)), grid.pieces * group);
}

}  // namespace lumo
