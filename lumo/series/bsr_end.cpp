#include "lumo/series/bsr_end.h"

#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/multiply/basecase/basecase.h"

namespace lumo {
namespace {

/// A leaf's number on the stack: magnitude without leading zero words, and sign.
template <typename wtype>
struct SmallNumber {
    static constexpr upL_t MAX_WORDS = 1024;
    wtype T[MAX_WORDS];
    upL_t L = 0;
    bool positive = true;

    void set(const wtype* words, upL_t length, bool sign) {
        std::copy_n(words, length, T);
        L = length;
        positive = sign;
    }
    void strip() {
        while (L != 0 && T[L - 1] == 0) --L;
    }
    void set_product(const SmallNumber& A, const wtype* B, upL_t BL, bool B_positive) {
        require(A.L + BL <= MAX_WORDS, "A leaf has grown beyond its words.", "BSR_E()");
        if (A.L == 0 || BL == 0) {
            L = 0;
            positive = true;
            return;
        }
        A.L >= BL ? Basecase::mulB(T, A.T, A.L, B, BL) : Basecase::mulB(T, B, BL, A.T, A.L);
        L = A.L + BL;
        positive = A.positive == B_positive;
        strip();
    }
    void add(const SmallNumber& B) {
        const upL_t n = std::max(L, B.L) + 1;
        require(n <= MAX_WORDS, "A leaf has grown beyond its words.", "BSR_E()");
        std::fill(T + L, T + n, wtype(0));
        if (positive == B.positive) {
            const wtype carry = bp_add(T, T, B.T, B.L, wtype(0));
            bp_add_scalar<wtype>(carry, T + B.L, n - B.L);
        } else {
            const wtype borrow = bp_sub(T, T, B.T, B.L, wtype(0));
            if (bp_add_scalar<wtype>(-typename WordTraits<wtype>::signed_word(borrow), T + B.L, n - B.L) <
                0) {
                bp_not(T, T, n);
                bp_add_scalar<wtype>(1, T, n);
                positive = !positive;
            }
        }
        L = n;
        strip();
        if (L == 0) positive = true;
    }
    void store(ExactFloat<wtype>& out) const {
        require_capacity("BSR_E()", out.capacity, L);
        out.T = out.base;
        std::copy_n(T, L, out.T);
        out.L = L;
        out.exp = 0;
        out.positive = positive;
        out.update_hash();
        out.strip_lzs_aligned();
    }
};

}  // namespace

template <typename wtype>
void bsr_end(const SeriesCommonP2B3<wtype>& series, Region range, Parts<wtype>& out) {
    // Two copies of each part: products go from one to the other.
    SmallNumber<wtype> P[2], Q[2], R[2], U;
    LeafTerm<wtype> term;
    series.term(term, range.s);
    P[0].set(term.P, term.PL, term.P_positive);
    Q[0].set(term.Q, term.QL, true);
    if (!series.hyperdescent) R[0].set(term.R, term.RL, term.R_positive);
    int now = 0;
    for (upL_t k = range.s + 1; k < range.e; ++k, now ^= 1) {
        const int next = now ^ 1;
        series.term(term, k);
        P[next].set_product(P[now], term.Q, term.QL, true);
        if (series.hyperdescent)
            U.set(term.P, term.PL, term.P_positive);
        else
            U.set_product(R[now], term.P, term.PL, term.P_positive);
        P[next].add(U);
        Q[next].set_product(Q[now], term.Q, term.QL, true);
        if (series.hyperdescent) continue;
        if (k + 1 < range.e || out.need_R) R[next].set_product(R[now], term.R, term.RL, term.R_positive);
    }
    P[now].store(out.P);
    Q[now].store(out.Q);
    if (out.need_R) R[now].store(out.R);
}

template void bsr_end(const SeriesCommonP2B3<std::uint32_t>&, Region, Parts<std::uint32_t>&);
template void bsr_end(const SeriesCommonP2B3<std::uint64_t>&, Region, Parts<std::uint64_t>&);

}  // namespace lumo
