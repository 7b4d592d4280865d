#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/blocks.h"
#include "lumo/numbers/words/shoup_divider.h"

namespace lumo {

namespace {

constexpr upL_t LEAST_WORDS = 1000;

template <typename wtype>
void check_top(const ShoupDivider<wtype>& D, wtype top, const char* location) {
    if (top >= D.d) throw InvalidParametersException(location, "Top word is too large.");
}

/// One step of the long division: r W + w = q d + r'. Both partial quotients fall short by at most one, so
/// both partial remainders are below 2 d < 2^W. Without a word, w is zero.
template <typename wtype>
struct DivisionStep {
    const ShoupDivider<wtype>& D;
    wtype r;

    void reduce(wtype& remainder, wtype& quotient) const {
        const bool over = remainder >= D.d;
        remainder -= over ? D.d : 0;
        quotient += over;
    }
    wtype next() {
        wtype q = r * D.inv_hi + mul_high(r, D.inv_lo);
        r = q * D.neg_d;
        reduce(r, q);
        return q;
    }
    wtype next(wtype w) {
        wtype q_word = mul_high(w, D.inv_hi);
        wtype r_word = w + q_word * D.neg_d;
        reduce(r_word, q_word);
        wtype q = next() + q_word;
        r += r_word;
        reduce(r, q);
        return q;
    }
};

template <typename wtype>
wtype divide_words(const ShoupDivider<wtype>& D, wtype* T, const wtype* A, upL_t L, wtype top) {
    check_top(D, top, "divmod(A)");
    DivisionStep<wtype> step{D, top};
    for (upL_t i = L; i-- > 0;) T[i] = step.next(A[i]);
    return step.r;
}

template <typename wtype>
wtype divide_zeros(const ShoupDivider<wtype>& D, wtype* T, upL_t L, wtype top) {
    check_top(D, top, "divmod()");
    DivisionStep<wtype> step{D, top};
    for (upL_t i = L; i-- > 0;) T[i] = step.next();
    return step.r;
}

/// Blocks of the divisions, at most 64. Not rounded to the unit: the remainders between blocks are what
/// counts, and 2^(W chunk) modulo d serves all of them.
BlockCut cut_division(upL_t L, upL_t tds) {
    const upL_t pieces = std::min(tds, BP_MAX_BLOCKS);
    const upL_t share = (L - 1) / pieces + ((L - 1) % pieces != 0);
    const upL_t chunk = std::max(share + 1, LEAST_WORDS);
    return {L, chunk, (L - 1) / chunk + 1};
}

/// The parallel division. The remainder entering each block is foreseen by modular powers; each block must
/// arrive at the one that its lower neighbour was given. A mismatch is a fault of the machine.
template <typename wtype, typename Residue, typename Divide>
wtype divide_blocks(const ShoupDivider<wtype>& D, const BlockCut& cut, wtype top, const ParallelContext& ctx,
                    const char* location, Residue residue, Divide divide) {
    wtype residues[BP_MAX_BLOCKS], entering[BP_MAX_BLOCKS], leaving[BP_MAX_BLOCKS];
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) { residues[block] = residue(block); });

    const wtype shift_block = D.pow2W(cut.chunk);
    const wtype shift_top = D.pow2W(cut.size(cut.count - 1));
    wtype r = top;
    for (upL_t block = cut.count; block-- > 0;) {
        entering[block] = r;
        r = D.add(D.mul(r, block + 1 == cut.count ? shift_top : shift_block), residues[block]);
    }
    parallel_for(*ctx.parallelizer, 0, cut.count,
                 [&](upL_t block) { leaving[block] = divide(block, entering[block]); });
    for (upL_t block = 0; block < cut.count; block++)
        if (leaving[block] != (block == 0 ? r : entering[block - 1]))
            throw AlgorithmFailedException(location, "Mismatching block residuals.");
    return r;
}

}  // namespace

template <typename wtype>
wtype bp_mod(const ShoupDivider<wtype>& D, const wtype* A, upL_t L, wtype top) {
    check_top(D, top, "mod()");
    wtype r = top;
    for (upL_t i = L; i-- > 0;) {
        wtype word = mul_high(A[i], D.inv_hi) * D.neg_d + A[i];
        if (word >= D.d) word -= D.d;
        r = D.add(D.shift(r), word);
    }
    return r;
}

template <typename wtype>
wtype bp_div_np(const ShoupDivider<wtype>& D, wtype* T, const wtype* A, upL_t L, wtype top,
                const ParallelContext& ctx) {
    if (L < LEAST_WORDS || ctx.tds < 3) return divide_words(D, T, A, L, top);
    check_top(D, top, "divmod(A)");
    const BlockCut cut = cut_division(L, ctx.tds);
    return divide_blocks(
        D, cut, top, ctx, "bp_div_np(A)",
        [&](upL_t block) { return bp_mod(D, A + cut.start(block), cut.size(block), wtype(0)); },
        [&](upL_t block, wtype entering) {
            return divide_words(D, T + cut.start(block), A + cut.start(block), cut.size(block), entering);
        });
}

template <typename wtype>
wtype bp_div_ex(const ShoupDivider<wtype>& D, wtype* T, upL_t L, wtype top, const ParallelContext& ctx) {
    if (L < LEAST_WORDS || ctx.tds < 2) return divide_zeros(D, T, L, top);
    check_top(D, top, "divmod()");
    const BlockCut cut = cut_division(L, ctx.tds);
    return divide_blocks(
        D, cut, top, ctx, "bp_div_ex()", [](upL_t) { return wtype(0); },
        [&](upL_t block, wtype entering) {
            return divide_zeros(D, T + cut.start(block), cut.size(block), entering);
        });
}

template std::uint32_t bp_mod(const ShoupDivider<std::uint32_t>&, const std::uint32_t*, upL_t, std::uint32_t);
template std::uint64_t bp_mod(const ShoupDivider<std::uint64_t>&, const std::uint64_t*, upL_t, std::uint64_t);
template std::uint32_t bp_div_np(const ShoupDivider<std::uint32_t>&, std::uint32_t*, const std::uint32_t*,
                                 upL_t, std::uint32_t, const ParallelContext&);
template std::uint64_t bp_div_np(const ShoupDivider<std::uint64_t>&, std::uint64_t*, const std::uint64_t*,
                                 upL_t, std::uint64_t, const ParallelContext&);
template std::uint32_t bp_div_ex(const ShoupDivider<std::uint32_t>&, std::uint32_t*, upL_t, std::uint32_t,
                                 const ParallelContext&);
template std::uint64_t bp_div_ex(const ShoupDivider<std::uint64_t>&, std::uint64_t*, upL_t, std::uint64_t,
                                 const ParallelContext&);

}  // namespace lumo
