#include "lumo/multiply/ntt/vt3/vt3_transform.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "lumo/foundation/errors/fatal.h"
#include "lumo/multiply/ntt/vt3/vt3_carry.h"
#include "lumo/multiply/ntt/vt3/vt3_modular.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_table.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"

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

/// The fields of doubles are exact under rounding to nearest only.
void check_rounding(const Vt3Kernels& table) {
    if (table.form == Vt3Form::floating && (__builtin_ia32_stmxcsr() & 0x6000) != 0)
        fatal_error("The FPU Control Word has been corrupted.");
}

std::uint64_t add_around(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t sum = a + b;
    return sum + (sum < b);
}

std::uint64_t sum_of_words(const unsigned char* bytes, upL_t count) {
    unsigned __int128 sum = 0;
    for (; count >= 8; count -= 8, bytes += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes, 8);
        sum += word;
    }
    std::uint64_t word = 0;
    if (count != 0) std::memcpy(&word, bytes, count);
    sum += word;
    return add_around(static_cast<std::uint64_t>(sum), static_cast<std::uint64_t>(sum >> 64));
}

}  // namespace

std::uint64_t vt3_sum(const ParallelContext& ctx, const unsigned char* bytes, upL_t count) {
    constexpr upL_t CHUNK = upL_t(1) << 20;
    const upL_t tasks = std::max(upL_t(1), std::min({ctx.tds, count / CHUNK, VT3_MOST_PIECES}));
    std::uint64_t sums[VT3_MOST_PIECES];
    parallel_for(*ctx.parallelizer, 0, tasks, [&](upL_t t) {
        const upL_t from = count / 8 * t / tasks * 8,
                    to = t + 1 == tasks ? count : count / 8 * (t + 1) / tasks * 8;
        sums[t] = sum_of_words(bytes + from, to - from);
    });
    for (upL_t t = 1; t < tasks; t++) sums[0] = add_around(sums[0], sums[t]);
    return sums[0];
}

Vt3Transform::Vt3Transform(const Vt3Size& size, upL_t tds)
    : length(size),
      shape(size.shape()),
      table(&vt3_kernels()),
      set(vt3_prime_set(size.n, size.m, size.k)),
      space(size, tds) {
    for (unsigned i = 0; i < shape.n; i++) prime(i);
}

const Vt3Prime& Vt3Transform::prime(unsigned i) const {
    return vt3_prime_table(set->index[i], table->form, std::max(shape.log_h, shape.log_c));
}

void Vt3Transform::twists(AlignedBufferC& scratch, Vt3Twist* twist, Vt3Range primes) const {
    const std::size_t h = shape.h();
    for (unsigned i = primes.from; i < primes.to; i++) {
        const std::uint64_t p = set->p[i];
        const Vt3Prime& constants = prime(i);
        auto* list = static_cast<std::uint64_t*>(scratch.spawn(space.twist));
        powers(list, h, constants.order[length.k], p, table->form);
        powers(list + h, h, constants.inverse_order[length.k], p, table->form);
        twist[i].power = list;
        twist[i].power_inverse = list + h;
        if (shape.m == 1) continue;
        // The C-th root of w_m^s: C is invertible modulo m.
        unsigned inverse = 1;
        while (inverse * shape.columns() % shape.m != 1) inverse++;
        const std::uint64_t root = pow_mod(constants.odd_order[shape.m / 2 - 1], inverse, p);
        powers(twist[i].part, shape.m, root, p, table->form);
        for (unsigned s = 0; s < shape.m; s++)
            twist[i].part_inverse[s] = twist[i].part[(shape.m - s) % shape.m];
    }
}

void Vt3Transform::columns(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
                           const unsigned char* operand, upL_t bytes, Vt3Range primes) const {
    const upL_t row_bytes = shape.columns() * shape.b / 8;
    const std::size_t used = std::min<upL_t>(shape.rows(), (bytes + row_bytes - 1) / row_bytes);
    const upL_t tiles = shape.columns() / VT3_COLUMNS;
    auto* tiles_of_pieces = static_cast<std::uint64_t*>(scratch.spawn(space.pieces * space.tiles));
    std::atomic<upL_t> next = 0;
    auto piece = [&](upL_t t) {
        check_rounding(*table);
        std::uint64_t* tile = tiles_of_pieces + t * (space.tiles / 8);
        std::uint64_t* digits = tile + shape.tile_words();
        for (upL_t at = next.fetch_add(1); at < tiles; at = next.fetch_add(1)) {
            table->cut(shape, digits, operand, bytes, at * shape.run_bytes(), row_bytes, used);
            for (unsigned i = primes.from; i < primes.to; i++)
                table->enter(shape, prime(i), digits, used, tile,
                             image + (i - primes.from) * shape.array_words(), at * VT3_COLUMNS);
        }
    };
    parallel_for(*ctx.parallelizer, 0, space.pieces, piece);
}

template <typename Group>
void Vt3Transform::for_groups(const ParallelContext& ctx, AlignedBufferC scratch, Vt3Range primes,
                              Group&& group_of) const {
    Vt3Twist twist[VT3_MAX_PRIMES];
    twists(scratch, twist, primes);
    const upL_t groups = shape.rows() / 8, all = groups * (primes.to - primes.from);
    // A thread that is late, or loses its core for a while, leaves more for the others.
    const upL_t share = std::max(upL_t(1), all / (8 * space.pieces));
    std::atomic<upL_t> next = 0;
    auto task = [&](upL_t) {
        check_rounding(*table);
        for (upL_t from = next.fetch_add(share); from < all; from = next.fetch_add(share))
            for (upL_t at = from; at < std::min(from + share, all); at++) {
                const auto i = static_cast<unsigned>(at / groups);
                const upL_t group = at % groups;
                group_of(prime(primes.from + i), twist[primes.from + i],
                         i * shape.array_words() + group * shape.group_words, group);
            }
    };
    parallel_for(*ctx.parallelizer, 0, space.pieces, task);
}

void Vt3Transform::rows(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
                        Vt3Range primes) const {
    for_groups(ctx, scratch, primes,
               [&](const Vt3Prime& p, const Vt3Twist& twist, upL_t offset, upL_t group) {
                   table->rows_forward(shape, p, twist, image + offset, nullptr, group);
               });
}

void Vt3Transform::products(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* out,
                            std::uint64_t* f, bool f_after_columns, std::uint64_t* g, bool g_after_columns,
                            Vt3Range primes) const {
    const bool f_waits = f_after_columns, g_waits = g_after_columns && g != f;
    for_groups(ctx, scratch, primes,
               [&](const Vt3Prime& p, const Vt3Twist& twist, upL_t offset, upL_t group) {
                   if (f_waits || g_waits)
                       table->rows_forward(shape, p, twist, (f_waits ? f : g) + offset,
                                           f_waits && g_waits ? g + offset : nullptr, group);
                   table->rows_inverse(shape, p, twist, out + offset, f + offset, g + offset, group);
               });
}

void Vt3Transform::products(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* out,
                            const std::uint64_t* f, const std::uint64_t* g, Vt3Range primes) const {
    products(ctx, scratch, out, const_cast<std::uint64_t*>(f), false, const_cast<std::uint64_t*>(g), false,
             primes);
}

std::uint64_t Vt3Transform::leave(const ParallelContext& ctx, AlignedBufferC scratch,
                                  const std::uint64_t* image, Vt3Window window) const {
    Vt3Crt crt = set->crt;
    for (unsigned i = 0; i < shape.n; i++) {
        const std::uint64_t p = set->p[i];
        crt.primes[i] = &prime(i);
        // 1 / N = -(p - 1) / N; the pointwise products left a factor 2^-B behind.
        std::uint64_t last = mul_mod(p - (p - 1) / length.points(), set->cofactor_inverse[i], p);
        if (table->form != Vt3Form::floating) last = vt3_variable(table->form, last, p);
        crt.last[i] = vt3_factor(table->form, last, p);
    }

    const upL_t tiles = shape.columns() / VT3_COLUMNS, row_bytes = shape.columns() * shape.b / 8;
    Vt3Output outputs[VT3_MOST_PIECES];
    std::uint64_t(*carry[VT3_MOST_PIECES])[VT3_CARRY_WORDS];
    std::uint64_t(*head[VT3_MOST_PIECES])[VT3_CARRY_WORDS];
    unsigned char* ones[VT3_MOST_PIECES];
    std::uint64_t start[VT3_MOST_PIECES + 1];
    std::uint64_t* tile[VT3_MOST_PIECES];
    for (upL_t t = 0; t < space.pieces; t++) {
        tile[t] = static_cast<std::uint64_t*>(scratch.spawn(space.tiles));
        carry[t] = static_cast<std::uint64_t(*)[VT3_CARRY_WORDS]>(scratch.spawn(space.carry));
        head[t] = static_cast<std::uint64_t(*)[VT3_CARRY_WORDS]>(scratch.spawn(space.carry));
        ones[t] = static_cast<unsigned char*>(scratch.spawn(space.ones));
        start[t] = tiles * t / space.pieces * shape.run_bytes();
    }
    start[space.pieces] = row_bytes;

    auto piece = [&](upL_t t) {
        check_rounding(*table);
        Vt3Output& output = outputs[t];
        output = {window.bytes, window.begin, window.end, 0,    row_bytes, true,
                  carry[t],     head[t],      ones[t],    true, 0,         0};
        for (upL_t at = tiles * t / space.pieces; at < tiles * (t + 1) / space.pieces; at++) {
            for (unsigned i = 0; i < shape.n; i++)
                table->leave(shape, prime(i), image + i * shape.array_words(),
                             tile[t] + i * shape.tile_words(), at * VT3_COLUMNS);
            output.place = at * shape.run_bytes();
            table->join(shape, crt, tile[t], output);
            output.first = false;
        }
    };
    parallel_for(*ctx.parallelizer, 0, space.pieces, piece);

    std::uint64_t top = 0, sum = 0;
    bool below_ones = true;
    for (upL_t t = 0; t < space.pieces; t++) {
        top |= outputs[t].top;
        sum = add_around(sum, outputs[t].sum);
        for (std::size_t r = 0; r < shape.rows(); r++)
            for (std::size_t i = 0; i < VT3_CARRY_WORDS; i++) sum = add_around(sum, carry[t][r][i]);
        const upL_t row = window.begin / row_bytes * row_bytes;
        if (row + start[t] <= window.begin && window.begin < row + start[t + 1])
            below_ones = outputs[t].below_ones;
    }
    unsigned bound = 2 * shape.b + shape.log_h + shape.log_c + (shape.m == 1 ? 0 : shape.m == 3 ? 2 : 3);
    bound -= (48 * shape.n + 63) / 64 * 64 - 64;
    if (bound < 64 && top >> bound) throw ConvolutionFailedException("VT3", "Coefficient is too large.");

    add_vt3_carries({shape.rows(), space.pieces, carry, head, ones, start, below_ones}, window.bytes,
                    window.begin, window.end);
    return sum;
}

}  // namespace lumo
