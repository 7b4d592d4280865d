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
    pieces = std::max(upL_t(1), std::min({tds, shape.columns() / VT3_COLUMNS, worth, VT3_MOST_PIECES}));
    twist = align_bytes(16 * shape.h());
    tiles = align_bytes(8 * shape.n * shape.tile_words());
    carry = align_bytes(8 * VT3_CARRY_WORDS * shape.rows());
    ones = align_bytes(shape.rows());
    scratch = shape.n * twist + pieces * (tiles + 2 * carry + ones);
}

}  // namespace lumo
