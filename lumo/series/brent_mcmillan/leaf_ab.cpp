#include "lumo/series/brent_mcmillan/leaf_ab.h"

#include <algorithm>

#include "lumo/foundation/errors/fatal.h"

namespace lumo {
namespace {

/// A positive number on the stack.
template <typename wtype>
struct Small {
    static constexpr unsigned W = WordTraits<wtype>::bits;
    /// A term adds at most the bits of i^3, i below 2^64, and of n^2.
    static constexpr upL_t MAX_WORDS = LEAF_TERMS_AB * (3 * 64 + 128) / W + 8;
    wtype T[MAX_WORDS];
    upL_t L = 0;

    /// this := this x factor.
    void multiply(std::uint64_t factor) {
        unsigned __int128 carry = 0;
        for (upL_t i = 0; i < L; ++i) {
            carry += static_cast<unsigned __int128>(T[i]) * factor;
            T[i] = static_cast<wtype>(carry);
            carry >>= W;
        }
        for (; carry != 0; carry >>= W) T[L++] = static_cast<wtype>(carry);
    }
    void multiply_power(std::uint64_t factor, unsigned power) {
        if (factor >> (64 / power) == 0) {
            std::uint64_t product = factor;
            for (unsigned i = 1; i < power; ++i) product *= factor;
            multiply(product);
        } else {
            for (unsigned i = 0; i < power; ++i) multiply(factor);
        }
    }
    /// this := this + A 2^bits.
    void add(const Small& A, upL_t bits) {
        const upL_t words = bits / W;
        const auto shift = static_cast<unsigned>(bits % W);
        const upL_t end = std::max(L, words + A.L + 1) + 1;
        require(end <= MAX_WORDS, "A leaf has grown beyond its words.", "leaf_ab()");
        std::fill(T + L, T + end, wtype(0));
        unsigned __int128 carry = 0;
        for (upL_t i = 0; i < A.L || carry != 0; ++i) {
            if (i < A.L) carry += static_cast<unsigned __int128>(A.T[i]) << shift;
            carry += T[words + i];
            T[words + i] = static_cast<wtype>(carry);
            carry >>= W;
        }
        L = end;
        while (L != 0 && T[L - 1] == 0) --L;
    }
    void set(std::uint64_t value) {
        L = 0;
        for (; value != 0; value >>= W % 64) {
            T[L++] = static_cast<wtype>(value);
            if (W == 64) break;
        }
    }
    void store(ExactFloat<wtype>& out) const {
        require_capacity("leaf_ab()", out.capacity, L);
        out.T = out.base;
        std::copy_n(T, L, out.T);
        out.L = L;
        out.exp = 0;
        out.positive = true;
        out.update_hash();
        out.strip_lzs_aligned();
    }
};

}  // namespace

template <typename wtype>
void leaf_ab(const SeriesBrentMcMillanAB<wtype>& series, Region range, PartsAB<wtype>& out) {
    require(range.terms() <= LEAF_TERMS_AB, "Too many terms for a leaf.", "leaf_ab()");
    // Term by term: T := T i^2 + S, V := V i^3 + S C', C' := C i + D, D := D i, with S = n^(2 terms).
    Small<wtype> T, V, C, D, one;
    one.set(1);
    D.set(1);
    upL_t S = 0;
    for (upL_t i = range.s; i < range.e; ++i) {
        S += 2 * series.k();
        C.multiply(i);
        C.add(D, 0);
        D.multiply(i);
        T.multiply_power(i, 2);
        T.add(one, S);
        V.multiply_power(i, 3);
        V.add(C, S);
    }
    T.store(out.T);
    V.store(out.V);
    D.store(out.D);
    if (out.need_C) C.store(out.C);
}

template void leaf_ab(const SeriesBrentMcMillanAB<std::uint32_t>&, Region, PartsAB<std::uint32_t>&);
template void leaf_ab(const SeriesBrentMcMillanAB<std::uint64_t>&, Region, PartsAB<std::uint64_t>&);

}  // namespace lumo
