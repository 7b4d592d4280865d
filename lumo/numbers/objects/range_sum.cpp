#include "lumo/numbers/objects/range_sum.h"

#include <algorithm>
#include <iterator>

namespace lumo {

namespace {

/// Cuts the range at the ends of the operands and calls piece(offset, length, a, b) from low to high; a and b
/// are null where the operand has no words.
template <typename wtype, typename Piece>
void walk_range(spL_t low, upL_t count, const PlacedWords<wtype>& A, const PlacedWords<wtype>& B,
                Piece&& piece) {
    const spL_t high = low + static_cast<spL_t>(count);
    spL_t cuts[6] = {low, high, A.exp, A.top(), B.exp, B.top()};
    for (spL_t& cut : cuts) cut = std::clamp(cut, low, high);
    std::sort(std::begin(cuts), std::end(cuts));
    auto words_at = [](const PlacedWords<wtype>& X, spL_t position) -> const wtype* {
        return X.exp <= position && position < X.top() ? X.T + (position - X.exp) : nullptr;
    };
    for (int i = 0; i + 1 < 6; i++) {
        if (cuts[i] == cuts[i + 1]) continue;
        piece(static_cast<upL_t>(cuts[i] - low), static_cast<upL_t>(cuts[i + 1] - cuts[i]),
              words_at(A, cuts[i]), words_at(B, cuts[i]));
    }
}

}  // namespace

template <typename wtype>
wtype negate_words(wtype* T, const wtype* A, upL_t L, wtype borrow, const ParallelContext& ctx) {
    bp_not(T, A, L, ctx);
    if (borrow != 0) return 1;
    return bp_add_scalar<wtype>(1, T, L, ctx) == 0 ? 1 : 0;
}

template <typename wtype>
wtype range_add(wtype* T, spL_t low, upL_t count, const PlacedWords<wtype>& A, const PlacedWords<wtype>& B,
                const ParallelContext& ctx) {
    wtype carry = 0;
    walk_range(low, count, A, B, [&](upL_t offset, upL_t L, const wtype* a, const wtype* b) {
        wtype* t = T + offset;
        if (a && b) {
            carry = bp_add(t, a, b, L, carry, ctx);
            return;
        }
        if (a || b)
            bp_copy(t, a ? a : b, L, ctx);
        else
            bp_zero(t, L, ctx);
        if (carry != 0) carry = static_cast<wtype>(bp_add_scalar<wtype>(1, t, L, ctx));
    });
    return carry;
}

template <typename wtype>
wtype range_sub(wtype* T, spL_t low, upL_t count, const PlacedWords<wtype>& A, const PlacedWords<wtype>& B,
                const ParallelContext& ctx) {
    wtype borrow = 0;
    walk_range(low, count, A, B, [&](upL_t offset, upL_t L, const wtype* a, const wtype* b) {
        wtype* t = T + offset;
        if (a && b) {
            borrow = bp_sub(t, a, b, L, borrow, ctx);
        } else if (b) {
            borrow = negate_words(t, b, L, borrow, ctx);
        } else if (a) {
            bp_copy(t, a, L, ctx);
            if (borrow != 0) borrow = bp_add_scalar<wtype>(-1, t, L, ctx) != 0 ? 1 : 0;
        } else {
            bp_fill(t, L, borrow != 0 ? static_cast<wtype>(-1) : wtype(0), ctx);
        }
    });
    return borrow;
}

template <typename wtype>
wtype add_shorter(wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL, const ParallelContext& ctx) {
    const wtype carry = bp_add(T, A, B, BL, wtype(0), ctx);
    if (T != A) bp_copy(T + BL, A + BL, AL - BL, ctx);
    return carry == 0 ? 0 : static_cast<wtype>(bp_add_scalar<wtype>(1, T + BL, AL - BL, ctx));
}

template <typename wtype>
wtype sub_shorter(wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL, const ParallelContext& ctx) {
    const wtype borrow = bp_sub(T, A, B, BL, wtype(0), ctx);
    if (T != A) bp_copy(T + BL, A + BL, AL - BL, ctx);
    return borrow != 0 && bp_add_scalar<wtype>(-1, T + BL, AL - BL, ctx) != 0 ? 1 : 0;
}

template std::uint32_t negate_words(std::uint32_t*, const std::uint32_t*, upL_t, std::uint32_t,
                                    const ParallelContext&);
template std::uint32_t add_shorter(std::uint32_t*, const std::uint32_t*, upL_t, const std::uint32_t*, upL_t,
                                   const ParallelContext&);
template std::uint32_t sub_shorter(std::uint32_t*, const std::uint32_t*, upL_t, const std::uint32_t*, upL_t,
                                   const ParallelContext&);
template std::uint32_t range_add(std::uint32_t*, spL_t, upL_t, const PlacedWords<std::uint32_t>&,
                                 const PlacedWords<std::uint32_t>&, const ParallelContext&);
template std::uint32_t range_sub(std::uint32_t*, spL_t, upL_t, const PlacedWords<std::uint32_t>&,
                                 const PlacedWords<std::uint32_t>&, const ParallelContext&);
template std::uint64_t negate_words(std::uint64_t*, const std::uint64_t*, upL_t, std::uint64_t,
                                    const ParallelContext&);
template std::uint64_t add_shorter(std::uint64_t*, const std::uint64_t*, upL_t, const std::uint64_t*, upL_t,
                                   const ParallelContext&);
template std::uint64_t sub_shorter(std::uint64_t*, const std::uint64_t*, upL_t, const std::uint64_t*, upL_t,
                                   const ParallelContext&);
template std::uint64_t range_add(std::uint64_t*, spL_t, upL_t, const PlacedWords<std::uint64_t>&,
                                 const PlacedWords<std::uint64_t>&, const ParallelContext&);
template std::uint64_t range_sub(std::uint64_t*, spL_t, upL_t, const PlacedWords<std::uint64_t>&,
                                 const PlacedWords<std::uint64_t>&, const ParallelContext&);

}  // namespace lumo
