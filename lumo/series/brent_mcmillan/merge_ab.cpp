#include "lumo/series/brent_mcmillan/merge_ab.h"

#include <algorithm>

#include "lumo/series/merge_products.h"
#include "lumo/series/modular_check.h"

namespace lumo {
namespace {

/// Drops the words below `bottom`; the hash then follows from the words that stay.
template <typename wtype>
void cut_below(ExactFloat<wtype>& number, spL_t bottom, const ParallelContext& ctx) {
    if (number.exp >= bottom) return;
    if (number.top() <= bottom) return number.clear();
    const auto dropped = static_cast<upL_t>(bottom - number.exp);
    number.T += dropped;
    number.exp = bottom;
    number.L -= dropped;
    number.update_hash(ctx);
}

/// T := A + B on the top `limit` words. A and B lose what lies below, after a check.
template <typename wtype>
void add_cut(const ParallelContext& ctx, ExactFloat<wtype>& T, ExactFloat<wtype>& A, ExactFloat<wtype>& B,
             upL_t limit, Region range) {
    lmb_Verify_BSR<wtype>(range.s, range.e, {&A, &B}, ctx, BSRStep::merge);
    const spL_t bottom = std::max(A.top(), B.top()) - static_cast<spL_t>(limit);
    cut_below(A, bottom, ctx);
    cut_below(B, bottom, ctx);
    T.set_add(A, B, ctx);
}

}  // namespace

template <typename wtype>
void cut_checked(ExactFloat<wtype>& number, upL_t limit, Region range, const ParallelContext& ctx) {
    if (number.L <= limit) return;
    lmb_Verify_BSR<wtype>(range.s, range.e, {&number}, ctx);
    cut_below(number, number.top() - static_cast<spL_t>(limit), ctx);
}

template <typename wtype>
TempsAB merge_temps_ab(const SizesAB& part) {
    const auto room = [](upL_t words) { return align_words<wtype>(words + 4); };
    TempsAB temps;
    temps.H = room(part.C + part.D);
    temps.X = room(temps.H + part.T);
    temps.E = room(2 * part.D);
    temps.F = room(3 * part.D);
    temps.G = room(std::max(part.D + part.V, temps.H + part.T));
    return temps;
}

template <typename wtype>
TempsAB join_temps_ab(const SizesAB& block, upL_t limit) {
    const auto room = [](upL_t words) { return align_words<wtype>(words + 4); };
    TempsAB temps;
    temps.X = room(std::max({block.C, block.T, block.D, limit}) + limit);
    temps.G = room(std::max({block.V, block.D, limit}) + limit);
    temps.E = temps.F = temps.H = temps.Y = room(limit);
    return temps;
}

template <typename wtype>
WorkAB<wtype> cut_work(LinearWordBuffer<wtype>& buffer, const TempsAB& temps) {
    const auto number = [&](upL_t words) { return ExactFloat<wtype>(buffer.cut_from_bottom(words), words); };
    WorkAB<wtype> work;
    work.E = number(temps.E);
    work.F = number(temps.F);
    work.G = number(temps.G);
    work.H = number(temps.H);
    work.X = number(temps.X);
    work.Y = number(temps.Y);
    return work;
}

template <typename wtype>
upL_t merge_scratch_ab(upL_t words, upL_t tds) {
    const auto whole = [](upL_t length, upL_t pieces) {
        BufferSizes sizes;
        const upL_t product = Multiply::max_buffer_sizes<wtype>(sizes, length + 8, pieces);
        const upL_t held = 2 * align_bytes(sizes.array_bytes) + align_bytes(sizes.scratch_bytes);
        const upL_t small = align_bytes((SMALL_WORDS<wtype> + 64) * sizeof(wtype)) +
                            Multiply::max_buffer_size<wtype>(SMALL_WORDS<wtype>, 1);
        return align_bytes(std::max({product, held, small}));
    };
    const upL_t paired = std::min(words, PAIR_WORDS_AB<wtype>);
    const upL_t least =
        std::max(whole(paired, tds), align_bytes(Multiply::max_buffer_size<wtype>(words + 8, tds, true)));
    return tds < 2 ? least : std::max(least, 2 * whole(paired, tds - tds / 2) + 2 * ALIGNMENT_BYTES);
}

template <typename wtype>
void merge_ab(const MultiplyContext& ctx, upL_t shift, PartsAB<wtype>& left, const PartsAB<wtype>& right,
              WorkAB<wtype> w) {
    const ParallelContext threads = ctx.parallel();
    const auto bits = static_cast<spL_t>(shift);
    // Both terms of what S0 multiplies: where the sum ends below is known before they are made.
    const spL_t bottom = left.C.exp + right.D.exp + right.T.exp;
    const upL_t longest = std::max(left.V.L + 3 * right.D.L, left.D.L + right.V.L);
    both(
        ctx, longest <= PAIR_WORDS_AB<wtype>,
        [&](const MultiplyContext& own) {
            multiply(own, w.H, left.C, right.D);
            multiply(own, w.X, w.H, right.T);
        },
        [&](const MultiplyContext& own) {
            multiply(own, w.E, right.D, right.D);
            multiply(own, w.G, left.D, right.V, bottom);
        });
    w.G.add(w.X, threads);
    w.G.mp2(bits);
    w.X.set_ExactFloat(right.T, threads);
    w.X.mp2(bits);
    both(
        ctx, longest <= PAIR_WORDS_AB<wtype>,
        [&](const MultiplyContext& own) {
            multiply(own, left.T, left.T, w.E, w.X.exp);
            left.T.add(w.X, own.parallel());
            left.T.strip_lzs_aligned();
            if (right.need_C) {
                multiply(own, left.C, right.C, left.D, w.H.exp);
                left.C.add(w.H, own.parallel());
                left.C.strip_lzs_aligned();
            }
        },
        [&](const MultiplyContext& own) {
            multiply(own, w.F, w.E, right.D);
            multiply(own, left.V, left.V, w.F, w.G.exp);
            left.V.add(w.G, own.parallel());
            left.V.strip_lzs_aligned();
        });
    multiply(ctx, left.D, left.D, right.D);
    left.D.strip_lzs_aligned();
}

template <typename wtype>
void join_ab(const MultiplyContext& ctx, upL_t shift, Region range, const PartsAB<wtype>& block,
             PartsAB<wtype>& tail, upL_t limit, WorkAB<wtype> w) {
    const ParallelContext threads = ctx.parallel();
    const auto bits = static_cast<spL_t>(shift);
    const upL_t longest = std::max(block.V.L, limit) + limit;
    const auto product = [&](const MultiplyContext& own, ExactFloat<wtype>& T, const ExactFloat<wtype>& A,
                             const ExactFloat<wtype>& B) {
        multiply(own, T, A, B);
        cut_checked(T, limit, range, own.parallel());
    };
    // X and G hold whole products, the others what is left of them.
    both(
        ctx, longest <= PAIR_WORDS_AB<wtype>,
        [&](const MultiplyContext& own) {
            product(own, w.X, block.C, tail.D);
            w.H.set_ExactFloat(w.X, own.parallel());
            product(own, w.X, w.H, tail.T);
        },
        [&](const MultiplyContext& own) {
            product(own, w.G, tail.D, tail.D);
            w.E.set_ExactFloat(w.G, own.parallel());
            product(own, w.G, block.D, tail.V);
        });
    add_cut(threads, w.Y, w.G, w.X, limit, range);
    w.Y.mp2(bits);
    tail.T.mp2(bits);
    both(
        ctx, longest <= PAIR_WORDS_AB<wtype>,
        [&](const MultiplyContext& own) {
            product(own, w.X, block.T, w.E);
            add_cut(own.parallel(), w.H, w.X, tail.T, limit, range);
            tail.T.set_ExactFloat(w.H, own.parallel());
        },
        [&](const MultiplyContext& own) {
            product(own, w.G, w.E, tail.D);
            w.F.set_ExactFloat(w.G, own.parallel());
            product(own, w.G, block.V, w.F);
            add_cut(own.parallel(), w.F, w.G, w.Y, limit, range);
            tail.V.set_ExactFloat(w.F, own.parallel());
        });
    product(ctx, w.X, block.D, tail.D);
    tail.D.set_ExactFloat(w.X, threads);
}

#define LUMO_INSTANTIATE(wtype)                                                                          \
    template void cut_checked(ExactFloat<wtype>&, upL_t, Region, const ParallelContext&);                \
    template TempsAB merge_temps_ab<wtype>(const SizesAB&);                                              \
    template TempsAB join_temps_ab<wtype>(const SizesAB&, upL_t);                                        \
    template WorkAB<wtype> cut_work(LinearWordBuffer<wtype>&, const TempsAB&);                           \
    template upL_t merge_scratch_ab<wtype>(upL_t, upL_t);                                                \
    template void merge_ab(const MultiplyContext&, upL_t, PartsAB<wtype>&, const PartsAB<wtype>&,        \
                           WorkAB<wtype>);                                                               \
    template void join_ab(const MultiplyContext&, upL_t, Region, const PartsAB<wtype>&, PartsAB<wtype>&, \
                          upL_t, WorkAB<wtype>);
LUMO_INSTANTIATE(std::uint32_t)
LUMO_INSTANTIATE(std::uint64_t)
#undef LUMO_INSTANTIATE

}  // namespace lumo
