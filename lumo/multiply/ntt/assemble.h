/// The last pass of a transform: tiles of columns become digits, digits words, and their carries meet.
#pragma once

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/multiply/kernels/vt3_kernels.h"
#include "lumo/multiply/ntt/ntt_parts.h"
#include "lumo/multiply/ntt/product_carry.h"

namespace lumo {

inline constexpr upL_t NTT_MOST_PIECES = 256;

/// A product of `rows` rows in tiles of 16 columns, cut into `pieces` ranges of tiles.
struct TileGrid {
    upL_t rows, tiles, pieces;
    upL_t run_bytes;   ///< of 16 digits
    upL_t tile_bytes;  ///< work area of a piece

    upL_t row_bytes() const { return tiles * run_bytes; }
    upL_t first_tile(upL_t piece) const { return tiles * piece / pieces; }
    upL_t carry_bytes(std::size_t carry) const { return align_bytes(8 * carry * rows); }
    upL_t scratch_bytes(std::size_t carry) const {
        return pieces * (align_bytes(tile_bytes) + 2 * carry_bytes(carry) + align_bytes(rows));
    }
};

/// `leave(at, tile, output)` makes the digits of tile `at`, with `tile` as its work area, and adds them up as
/// the output says. Returns the sum of all words, and the OR of the highest words of all digits in `top`.
/// Takes grid.scratch_bytes(CARRY) of scratch.
template <std::size_t CARRY, typename Leave>
std::uint64_t assemble(const ParallelContext& ctx, AlignedBufferC scratch, const TileGrid& grid,
                       NttWindow window, std::uint64_t& top, Leave leave) {
    kernels::DigitOutput<CARRY> outputs[NTT_MOST_PIECES];
    std::uint64_t(*carry[NTT_MOST_PIECES])[CARRY];
    std::uint64_t(*head[NTT_MOST_PIECES])[CARRY];
    unsigned char* ones[NTT_MOST_PIECES];
    std::uint64_t start[NTT_MOST_PIECES + 1];
    std::uint64_t* tile[NTT_MOST_PIECES];
    for (upL_t t = 0; t < grid.pieces; t++) {
        tile[t] = static_cast<std::uint64_t*>(scratch.spawn(grid.tile_bytes));
        carry[t] = static_cast<std::uint64_t(*)[CARRY]>(scratch.spawn(grid.carry_bytes(CARRY)));
        head[t] = static_cast<std::uint64_t(*)[CARRY]>(scratch.spawn(grid.carry_bytes(CARRY)));
        ones[t] = static_cast<unsigned char*>(scratch.spawn(grid.rows));
        start[t] = grid.first_tile(t) * grid.run_bytes;
    }
    start[grid.pieces] = grid.row_bytes();

    parallel_for(ctx.runner(), 0, grid.pieces, [&](upL_t t) {
        kernels::DigitOutput<CARRY>& output = outputs[t];
        output = {window.bytes, window.begin, window.end, 0, grid.row_bytes(), true, carry[t], head[t],
                  ones[t],      true,         0,          0};
        for (upL_t at = grid.first_tile(t); at < grid.first_tile(t + 1); at++) {
            output.place = at * grid.run_bytes;
            leave(at, tile[t], output);
            output.first = false;
        }
    });

    std::uint64_t sum = 0;
    top = 0;
    bool below_ones = true;
    for (upL_t t = 0; t < grid.pieces; t++) {
        top |= outputs[t].top;
        sum = add_around(sum, outputs[t].sum);
        for (std::size_t r = 0; r < grid.rows; r++)
            for (std::size_t i = 0; i < CARRY; i++) sum = add_around(sum, carry[t][r][i]);
        const upL_t row = window.begin / grid.row_bytes() * grid.row_bytes();
        if (row + start[t] <= window.begin && window.begin < row + start[t + 1])
            below_ones = outputs[t].below_ones;
    }
    add_carries<CARRY>({grid.rows, grid.pieces, carry, head, ones, start, below_ones}, window.bytes,
                       window.begin, window.end);
    return sum;
}

}  // namespace lumo
