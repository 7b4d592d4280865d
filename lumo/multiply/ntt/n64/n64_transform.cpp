#include "lumo/multiply/ntt/n64/n64_transform.h"

#include <atomic>
#include <bit>
#include <cstring>

#include "lumo/multiply/ntt/modular.h"
#include "lumo/multiply/ntt/n64/n64_join.h"
#include "lumo/multiply/ntt/n64/n64_nodes.h"

namespace lumo {

namespace {

/// 16 words of an operand from word `at` on, zeros beyond its end.
void cut_words(std::uint64_t* to, const unsigned char* operand, upL_t bytes, upL_t at) {
    const upL_t begin = std::min(8 * at, bytes), end = std::min(begin + 128, bytes);
    if (end - begin < 128) std::memset(to, 0, 128);
    if (begin < end) std::memcpy(to, operand + begin, end - begin);
}

}  // namespace

N64Transform::N64Transform(const N64Size& size, upL_t tds)
    : length(size),
      set(&n64_prime_set(size.m, size.k, std::max(size.log_h(), size.log_c()))),
      space(size, tds) {}

std::uint64_t N64Transform::columns(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
                                    const unsigned char* operand, upL_t bytes, PrimeRange range) const {
    const upL_t rows = length.rows(), h = upL_t(1) << length.log_h(), tile_bytes = align_bytes(128 * rows);
    auto* tiles = static_cast<std::uint64_t*>(scratch.spawn(space.grid.pieces * tile_bytes));
    std::atomic<upL_t> next = 0;
    parallel_for(ctx.runner(), 0, space.grid.pieces, [&](upL_t t) {
        std::uint64_t* tile = tiles + t * (tile_bytes / 8);
        for (upL_t at = next.fetch_add(1); at < space.grid.tiles; at = next.fetch_add(1))
            for (unsigned i = range.from; i < range.to; i++) {
                const N64Prime& prime = (*set)[i];
                for (upL_t r = 0; r < rows; r++) {
                    cut_words(tile + 16 * r, operand, bytes, r * length.columns() + 16 * at);
                    for (upL_t j = 16 * r; j < 16 * r + 16; j++)
                        tile[j] = prime.field.mul(tile[j], prime.one);
                }
                n64_odd_forward(prime, length.m, tile, h);
                for (upL_t s = 0; s < length.m; s++)
                    n64_forward(prime, tile + 16 * s * h, 16 * h, length.log_h());
                std::uint64_t* to = image + (i - range.from) * (space.prime / 8) + 16 * at;
                for (upL_t r = 0; r < rows; r++) std::memcpy(to + r * space.row_words, tile + 16 * r, 128);
            }
    });
    return ntt_sum(ctx, operand, bytes);
}

template <typename Row>
void N64Transform::for_rows(const ParallelContext& ctx, PrimeRange range, Row row_of) const {
    const upL_t rows = length.rows(), all = rows * (range.to - range.from);
    const upL_t share = std::max(upL_t(1), all / (8 * space.grid.pieces));
    std::atomic<upL_t> next = 0;
    parallel_for(ctx.runner(), 0, space.grid.pieces, [&](upL_t) {
        for (upL_t from = next.fetch_add(share); from < all; from = next.fetch_add(share))
            for (upL_t at = from; at < std::min(from + share, all); at++)
                row_of((*set)[range.from + at / rows],
                       at / rows * (space.prime / 8) + at % rows * space.row_words, at % rows);
    });
}

std::uint64_t N64Transform::root_of_row(const N64Prime& prime, upL_t r, bool inverse) const {
    // Row (s, i), i in bits reversed f: x^C = o^s E(f / h) with o of order m. E(f / 2^k) is a C-th root of
    // the second factor; C is invertible modulo m.
    const unsigned log_h = length.log_h(), m = length.m;
    const upL_t s = r >> log_h, i = r & ((upL_t(1) << log_h) - 1);
    unsigned c_inverse = 1;
    while (m != 1 && c_inverse * length.columns() % m != 1) c_inverse++;
    const std::uint64_t p = prime.field.p;
    const upL_t odd = s * c_inverse % m;
    std::uint64_t root = pow_mod(prime.odd_order, inverse ? (m - odd) % m : odd, p);
    const auto& order = inverse ? prime.inverse_order : prime.order;
    for (unsigned bit = 0; bit < log_h; bit++)
        if (i >> bit & 1) root = mul_mod(root, order[length.k - (log_h - 1 - bit)], p);
    return root;
}

void N64Transform::row_forward(const N64Prime& prime, std::uint64_t* x, upL_t r) const {
    if (r != 0) n64_twist(prime, x, length.columns(), root_of_row(prime, r, false));
    n64_forward(prime, x, length.columns(), length.log_c());
}

void N64Transform::row_inverse(const N64Prime& prime, std::uint64_t* x, upL_t r) const {
    n64_inverse(prime, x, length.columns(), length.log_c());
    if (r != 0) n64_twist(prime, x, length.columns(), root_of_row(prime, r, true));
}

void N64Transform::rows(const ParallelContext& ctx, AlignedBufferC, std::uint64_t* image,
                        PrimeRange range) const {
    for_rows(ctx, range,
             [&](const N64Prime& prime, upL_t offset, upL_t r) { row_forward(prime, image + offset, r); });
}

void N64Transform::products(const ParallelContext& ctx, AlignedBufferC, std::uint64_t* out, std::uint64_t* f,
                            bool f_after_columns, std::uint64_t* g, bool g_after_columns,
                            PrimeRange range) const {
    for_rows(ctx, range, [&](const N64Prime& prime, upL_t offset, upL_t r) {
        if (f_after_columns) row_forward(prime, f + offset, r);
        if (g_after_columns && g != f) row_forward(prime, g + offset, r);
        const N64Field field = prime.field;
        for (upL_t c = offset; c < offset + length.columns(); c++) out[c] = field.mul_var(f[c], g[c]);
        row_inverse(prime, out + offset, r);
    });
}

NttOutcome N64Transform::leave(const ParallelContext& ctx, AlignedBufferC scratch, const std::uint64_t* image,
                               NttWindow window) const {
    const N64Join join(*set, length.points());
    const upL_t rows = length.rows(), h = upL_t(1) << length.log_h();
    const auto leave_tile = [&](upL_t at, std::uint64_t* tiles,
                                kernels::DigitOutput<N64_CARRY_WORDS>& output) {
        for (unsigned i = 0; i < N64_PRIMES; i++) {
            const N64Prime& prime = (*set)[i];
            std::uint64_t* tile = tiles + i * 16 * rows;
            const std::uint64_t* from = image + i * (space.prime / 8) + 16 * at;
            for (upL_t r = 0; r < rows; r++) std::memcpy(tile + 16 * r, from + r * space.row_words, 128);
            for (upL_t s = 0; s < length.m; s++)
                n64_inverse(prime, tile + 16 * s * h, 16 * h, length.log_h());
            n64_odd_inverse(prime, length.m, tile, h);
        }
        join(tiles, rows, output);
    };
    std::uint64_t top;
    const std::uint64_t sum = assemble<N64_CARRY_WORDS>(ctx, scratch, space.grid, window, top, leave_tile);
    return {sum, top >> std::bit_width(length.points()) == 0};
}

}  // namespace lumo
