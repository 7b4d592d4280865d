#include "lumo/multiply/ntt/vt3/vt3_transform.h"

#include <algorithm>

#include "lumo/foundation/errors/fatal.h"
#include "lumo/multiply/ntt/piece_shares.h"
#include "lumo/multiply/ntt/vt3/vt3_modular.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_table.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"
#include "lumo/multiply/ntt/vt3/vt3_wide_join.h"

namespace lumo {

using namespace kernels;

namespace {

void powers(std::uint64_t* to, std::size_t count, std::uint64_t w, std::uint64_t p, Vt3Form form) {
    const ConstantMultiplier times(w, p);
    std::uint64_t value = form == Vt3Form::floating ? 1 : vt3_variable(form, 1, p);
    for (std::size_t i = 0; i < count; i++) {
        to[i] = form == Vt3Form::floating ? vt3_variable(form, value, p) : value;
        value = times(value);
    }
}

}  // namespace

Vt3Transform::Vt3Transform(const Vt3Size& size, upL_t tds)
    : Vt3Transform(size, tds, vt3_kernels(), vt3_kernels()) {}

Vt3Transform::Vt3Transform(const Vt3Size& size, upL_t tds, const Vt3Kernels& even_kernels,
                           const Vt3Kernels& odd_kernels)
    : length(size),
      shape(size.shape()),
      even(&even_kernels),
      odd(&odd_kernels),
      set(vt3_prime_set(size.n, size.m, size.k)),
      space(size, tds) {
    if (even->node_bits != 4 || odd->node_bits != 4) shape.tile_gap = 0;
    for (unsigned i = 0; i < shape.n; i++) prime(i);
}

const Vt3Prime& Vt3Transform::prime(unsigned i) const {
    return vt3_prime_table(set->index[i], kernels(i).form, std::max(shape.log_h, shape.log_c));
}

/// The fields of doubles are exact under rounding to nearest only.
void Vt3Transform::check_rounding() const {
    const bool doubles = even->form == Vt3Form::floating || odd->form == Vt3Form::floating;
    if (doubles && (__builtin_ia32_stmxcsr() & 0x6000) != 0)
        fatal_error("The FPU Control Word has been corrupted.");
}

void Vt3Transform::twists(AlignedBufferC& scratch, Vt3Twist* twist, PrimeRange range) const {
    const std::size_t h = shape.h();
    for (unsigned i = range.from; i < range.to; i++) {
        const std::uint64_t p = set->p[i];
        const Vt3Prime& constants = prime(i);
        const Vt3Form form = kernels(i).form;
        auto* list = static_cast<std::uint64_t*>(scratch.spawn(space.twist));
        powers(list, h, constants.order[length.k], p, form);
        powers(list + h, h, constants.inverse_order[length.k], p, form);
        // 1 / N = -(p - 1) / N; the pointwise products left a factor 2^-B behind.
        std::uint64_t last = mul_mod(p - (p - 1) / length.points(), set->cofactor_inverse[i], p);
        if (form != Vt3Form::floating) last = vt3_variable(form, last, p);
        twist[i].last = vt3_variable(form, last, p);
        twist[i].power = list;
        twist[i].power_inverse = list + h;
        if (shape.m == 1) continue;
        // The C-th root of w_m^s: C is invertible modulo m.
        unsigned inverse = 1;
        while (inverse * shape.columns() % shape.m != 1) inverse++;
        const std::uint64_t root = pow_mod(constants.odd_order[shape.m / 2 - 1], inverse, p);
        powers(twist[i].part, shape.m, root, p, form);
        for (unsigned s = 0; s < shape.m; s++)
            twist[i].part_inverse[s] = twist[i].part[(shape.m - s) % shape.m];
    }
}

/// Each piece takes primes of its own as far as it gets two or more and finds its columns again in its cache
/// when it comes to the rows; digits are then cut once a piece.
bool Vt3Transform::divides_primes(PrimeRange range) const {
    return !shape.distant && 2 * space.grid.pieces <= range.to - range.from;
}

std::uint64_t Vt3Transform::columns(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
                                    const unsigned char* operand, upL_t bytes, PrimeRange range) const {
    const upL_t row_bytes = shape.columns() * shape.b / 8;
    const std::size_t used = std::min<upL_t>(shape.rows(), (bytes + row_bytes - 1) / row_bytes);
    const upL_t pieces = space.grid.pieces, tiles = space.grid.tiles, all = tiles * (range.to - range.from);
    const bool by_primes = divides_primes(range);
    auto* tiles_of_pieces =
        static_cast<std::uint64_t*>(scratch.spawn(pieces * align_bytes(space.grid.tile_bytes)));
    PieceShares shares(pieces);
    for (upL_t t = 0; t < pieces; t++) {
        if (by_primes)
            shares.deal(t, 0, tiles);
        else
            shares.deal(t, space.grid.first_tile(t), space.grid.first_tile(t + 1));
    }
    std::uint64_t sums[NTT_MOST_PIECES] = {};
    auto piece = [&](upL_t t) {
        check_rounding();
        std::uint64_t* tile = tiles_of_pieces + t * (align_bytes(space.grid.tile_bytes) / 8);
        std::uint64_t* digits = tile + shape.tile_words();
        shares.work(t, [&](upL_t owner, upL_t at) {
            const upL_t from = by_primes ? all * owner / pieces : 0,
                        to = by_primes ? all * (owner + 1) / pieces : all;
            const auto enter_with = [&](const Vt3Kernels& table) {
                const std::uint64_t sum =
                    table.cut(shape, digits, operand, bytes, at * shape.run_bytes(), row_bytes, used);
                // Those who take other primes cut the same digits.
                if (&table == even && from <= at && at < to) sums[t] = add_around(sums[t], sum);
                for (upL_t i = from / tiles; i * tiles + at < to; i++) {
                    const auto number = range.from + static_cast<unsigned>(i);
                    if (i * tiles + at < from || &kernels(number) != &table) continue;
                    table.enter(shape, prime(number), digits, used, tile, image + i * shape.array_words(),
                                at * VT3_COLUMNS);
                }
            };
            enter_with(*even);
            if (odd != even) enter_with(*odd);
        });
    };
    parallel_for(ctx.runner(), 0, pieces, piece);
    for (upL_t t = 1; t < pieces; t++) sums[0] = add_around(sums[0], sums[t]);
    return sums[0];
}

template <typename Group>
void Vt3Transform::for_groups(const ParallelContext& ctx, AlignedBufferC scratch, PrimeRange range,
                              Group&& group_of) const {
    Vt3Twist twist[VT3_MAX_PRIMES];
    twists(scratch, twist, range);
    const upL_t pieces = space.grid.pieces, groups = shape.rows() / 8, all = groups * (range.to - range.from);
    PieceShares shares(pieces);
    for (upL_t t = 0; t < pieces; t++) shares.deal(t, all * t / pieces, all * (t + 1) / pieces);
    auto* work_of_pieces = static_cast<std::uint64_t*>(scratch.spawn(pieces * space.group));
    auto task = [&](upL_t t) {
        check_rounding();
        std::uint64_t* work = work_of_pieces + t * (space.group / 8);
        shares.work(t, [&](upL_t, upL_t at) {
            const auto i = static_cast<unsigned>(at / groups);
            const upL_t group = at % groups;
            const upL_t ahead = shape.distant && at + 1 < all ? shape.columns() : 0;
            group_of(kernels(range.from + i), prime(range.from + i), twist[range.from + i],
                     i * shape.array_words() + group * shape.group_words, group, work, ahead);
        });
    };
    parallel_for(ctx.runner(), 0, pieces, task);
}

void Vt3Transform::rows(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
                        PrimeRange range) const {
    for_groups(ctx, scratch, range,
               [&](const Vt3Kernels& table, const Vt3Prime& p, const Vt3Twist& twist, upL_t offset,
                   upL_t group, std::uint64_t*, upL_t ahead) {
                   std::uint64_t* x = image + offset;
                   table.rows_forward(shape, p, twist, x, {x + shape.group_words, ahead}, group);
               });
}

void Vt3Transform::products(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* out,
                            std::uint64_t* f, bool f_after_columns, std::uint64_t* g, bool g_after_columns,
                            PrimeRange range) const {
    const upL_t next = shape.group_words;
    for_groups(ctx, scratch, range,
               [&](const Vt3Kernels& table, const Vt3Prime& p, const Vt3Twist& twist, upL_t offset,
                   upL_t group, std::uint64_t* work, upL_t ahead) {
                   std::uint64_t *x = f + offset, *y = g + offset;
                   const Vt3Rows f_rows{f_after_columns ? x : nullptr, x};
                   const Vt3Rows g_rows = g == f            ? Vt3Rows{nullptr, x}
                                          : g_after_columns ? Vt3Rows{y, work}
                                                            : Vt3Rows{nullptr, y};
                   table.rows_product(shape, p, twist, out + offset, f_rows, g_rows,
                                      {x + next, ahead, y + next, g == f ? 0 : ahead}, group);
               });
}

NttOutcome Vt3Transform::leave(const ParallelContext& ctx, AlignedBufferC scratch, const std::uint64_t* image,
                               NttWindow window) const {
    Vt3Crt crt = set->crt;
    for (unsigned i = 0; i < shape.n; i++) crt.primes[i] = &prime(i);
    const auto leave_tile = [&](upL_t at, std::uint64_t* tile) {
        check_rounding();
        for (unsigned i = 0; i < shape.n; i++)
            kernels(i).leave(shape, prime(i), image + i * shape.array_words(), tile + i * shape.tile_words(),
                             at * VT3_COLUMNS);
    };
    std::uint64_t top, sum;
    if (joined_by_kernels()) {
        sum = assemble<VT3_CARRY_WORDS>(ctx, scratch, space.grid, window, top,
                                        [&](upL_t at, std::uint64_t* tile, Vt3Output& output) {
                                            leave_tile(at, tile);
                                            even->join(shape, crt, tile, output);
                                        });
    } else {
        const Vt3WideJoin join(shape, crt, even->form, odd->form);
        const auto leave_wide = [&](upL_t at, std::uint64_t* tile, auto& output) {
            leave_tile(at, tile);
            join(tile, output);
        };
        sum = vt3_carry_words(length) == 4 ? assemble<4>(ctx, scratch, space.grid, window, top, leave_wide)
                                           : assemble<5>(ctx, scratch, space.grid, window, top, leave_wide);
    }
    // Bits of the largest coefficient: those of a product of digits, and of the number of summands. Short
    // ones do not reach the highest word, whose lowest bit stands at `below`.
    const unsigned bits = 2 * shape.b + shape.log_h + shape.log_c + (shape.m == 1 ? 0 : shape.m == 3 ? 2 : 3);
    const unsigned below = (48 * shape.n + 63) / 64 * 64 - 64;
    const bool plausible = bits >= below + 64 || top >> (bits > below ? bits - below : 0) == 0;
    return {sum, plausible};
}

}  // namespace lumo
