#include <algorithm>

#include "lumo/numbers/objects/exact_float.h"
#include "lumo/numbers/objects/range_sum.h"

namespace lumo {

namespace {

void check_limit(bool ok, const char* location, const char* text) {
    if (!ok) [[unlikely]]
        throw InvalidParametersException(location, text);
}

}  // namespace

/// Moves T down so that the number begins at position `bottom`; the new words are left to the caller.
template <typename wtype>
void ExactFloat<wtype>::extend_down(const char* location, spL_t bottom) {
    if (bottom >= exp) return;
    check_limit(bottom >= Tmin(), location, "Bexp < Tmin");
    const spL_t words = exp - bottom;
    T -= words;
    L += static_cast<upL_t>(words);
    exp = bottom;
}

/// Adds a carry or a borrow at word `from`; a carry out of the top becomes a new word.
template <typename wtype>
void ExactFloat<wtype>::ripple(upL_t from, typename WordTraits<wtype>::signed_word carry,
                               const ParallelContext& ctx) {
    if (bp_add_scalar(carry, T + from, L - from, ctx) > 0) T[L++] = 1;
}

template <typename wtype>
void ExactFloat<wtype>::uaddAB_ip(const ExactFloat& B, const ParallelContext& ctx) {
    constexpr const char* location = "ExactFloat::uaddAB_ip()";
    check_limit(top() < Tmax(), location, "Amag >= Tmax");
    const upL_t below = exp > B.exp ? static_cast<upL_t>(exp - B.exp) : 0;
    const upL_t copied = std::min(below, B.L);
    extend_down(location, B.exp);
    bp_copy(T, B.T, copied, ctx);
    bp_zero(T + copied, below - copied, ctx);
    if (copied == B.L) return;
    const auto offset = static_cast<upL_t>(B.exp - exp) + copied;
    const upL_t overlap = B.L - copied;
    const wtype carry = bp_add(T + offset, T + offset, B.T + copied, overlap, wtype(0), ctx);
    ripple(offset + overlap, static_cast<typename WordTraits<wtype>::signed_word>(carry), ctx);
}

template <typename wtype>
void ExactFloat<wtype>::uaddBA_ip(const ExactFloat& B, const ParallelContext& ctx) {
    constexpr const char* location = "ExactFloat::uaddBA_ip()";
    check_limit(B.top() < Tmax(), location, "Bmag >= Tmax");
    const spL_t A_exp = exp, A_top = top();
    extend_down(location, B.exp);
    L = static_cast<upL_t>(B.top() - exp);
    // Positions between the old ends of A, its bottom and the bottom of B, cut B into three parts.
    const spL_t middle = std::max(A_exp, B.exp);
    const spL_t upper = std::max(A_top, B.exp);
    auto in_B = [&](spL_t position) { return B.T + (position - B.exp); };
    auto in_T = [&](spL_t position) { return T + (position - exp); };
    bp_copy(in_T(upper), in_B(upper), static_cast<upL_t>(B.top() - upper), ctx);
    bp_zero(in_T(A_top), static_cast<upL_t>(upper - A_top), ctx);
    if (B.exp < middle) bp_copy(T, B.T, static_cast<upL_t>(middle - B.exp), ctx);
    if (middle >= A_top) return;
    const wtype carry =
        bp_add(in_T(middle), in_T(middle), in_B(middle), static_cast<upL_t>(A_top - middle), wtype(0), ctx);
    ripple(static_cast<upL_t>(A_top - exp), static_cast<typename WordTraits<wtype>::signed_word>(carry), ctx);
}

/// Drops the top zero words that a difference left.
template <typename wtype>
void ExactFloat<wtype>::settle_difference(const ParallelContext& ctx) {
    L = bp_strip<wtype>(0, T, L, ctx);
    if (L == 0) drop_low(0);
}

template <typename wtype>
void ExactFloat<wtype>::usubAB_ip(const ExactFloat& B, const ParallelContext& ctx) {
    constexpr const char* location = "ExactFloat::usubAB_ip()";
    check_limit(top() <= Tmax(), location, "Amag > Tmax");
    const upL_t below = exp > B.exp ? static_cast<upL_t>(exp - B.exp) : 0;
    const upL_t negated = std::min(below, B.L);
    extend_down(location, B.exp);
    const auto offset = static_cast<upL_t>(B.exp - exp);
    const upL_t overlap = B.L - negated;
    wtype borrow = negate_words(T, B.T, negated, wtype(0), ctx);
    bp_fill(T + negated, below - negated, borrow != 0 ? static_cast<wtype>(-1) : wtype(0), ctx);
    const upL_t start = std::max(offset, below);
    if (overlap != 0) borrow = bp_sub(T + start, T + start, B.T + negated, overlap, borrow, ctx);
    if (borrow != 0 && bp_add_scalar<wtype>(-1, T + start + overlap, L - start - overlap, ctx) != 0) {
        negate_words(T, T, L, wtype(0), ctx);
        positive = !positive;
    }
    settle_difference(ctx);
}

/// B reaches higher, so the result is B - A with the other sign: one pass, nothing to negate after it.
template <typename wtype>
void ExactFloat<wtype>::usubBA_ip(const ExactFloat& B, const ParallelContext& ctx) {
    constexpr const char* location = "ExactFloat::usubBA_ip()";
    check_limit(B.top() <= Tmax(), location, "Bmag > Tmax");
    const spL_t A_exp = exp, A_top = top();
    extend_down(location, B.exp);
    L = static_cast<upL_t>(B.top() - exp);
    const spL_t middle = std::max(A_exp, B.exp);
    const spL_t upper = std::max(A_top, B.exp);
    auto in_B = [&](spL_t position) { return B.T + (position - B.exp); };
    auto in_T = [&](spL_t position) { return T + (position - exp); };
    wtype borrow = 0;
    if (B.exp < A_exp)
        bp_copy(T, B.T, static_cast<upL_t>(A_exp - B.exp), ctx);
    else
        borrow = negate_words(T, T, static_cast<upL_t>(std::min(middle, A_top) - exp), wtype(0), ctx);
    if (middle < A_top)
        borrow =
            bp_sub(in_T(middle), in_B(middle), in_T(middle), static_cast<upL_t>(A_top - middle), borrow, ctx);
    bp_fill(in_T(A_top), static_cast<upL_t>(upper - A_top), borrow != 0 ? static_cast<wtype>(-1) : wtype(0),
            ctx);
    bp_copy(in_T(upper), in_B(upper), static_cast<upL_t>(B.top() - upper), ctx);
    if (borrow != 0) ripple(static_cast<upL_t>(upper - exp), -1, ctx);
    positive = !positive;
    settle_difference(ctx);
}

/// A + B, or A - B.
template <typename wtype>
void ExactFloat<wtype>::join_ip(const ExactFloat& B, bool subtract, const ParallelContext& ctx) {
    const std::uint64_t joined = subtract ? Hash61::sub(hash, B.hash) : Hash61::add(hash, B.hash);
    const bool B_higher = B.top() > top();
    if (L == 0) {
        set_ExactFloat(B, ctx);
        if (subtract) negate();
    } else if (B.L != 0) {
        if ((positive == B.positive) != subtract)
            B_higher ? uaddBA_ip(B, ctx) : uaddAB_ip(B, ctx);
        else
            B_higher ? usubBA_ip(B, ctx) : usubAB_ip(B, ctx);
    }
    // Of a B without words too, which a fault may have left a hash.
    hash = joined;
}

template <typename wtype>
void ExactFloat<wtype>::add(const ExactFloat& B, const ParallelContext& ctx) {
    join_ip(B, false, ctx);
}

template <typename wtype>
void ExactFloat<wtype>::sub(const ExactFloat& B, const ParallelContext& ctx) {
    join_ip(B, true, ctx);
}

template <typename wtype>
void ExactFloat<wtype>::set_add(const ExactFloat& A, const ExactFloat& B, const ParallelContext& ctx) {
    constexpr const char* location = "ExactFloat::set_add()";
    if (A.L == 0 || B.L == 0) {
        const std::uint64_t joined = Hash61::add(A.hash, B.hash);
        set_ExactFloat(B.L == 0 ? A : B, ctx);
        hash = joined;
        return;
    }
    if (A.positive != B.positive) throw InvalidParametersException(location, "Not implemented yet.");
    const spL_t low = std::min(A.exp, B.exp);
    const auto length = static_cast<upL_t>(std::max(A.top(), B.top()) - low);
    require_capacity(location, capacity, length + 1);
    T = base;
    L = length;
    exp = low;
    positive = A.positive;
    hash = Hash61::add(A.hash, B.hash);
    const wtype carry = range_add(T, low, length, PlacedWords<wtype>{A.T, A.L, A.exp},
                                  PlacedWords<wtype>{B.T, B.L, B.exp}, ctx);
    if (carry != 0) T[L++] = carry;
}

template <typename wtype>
void ExactFloat<wtype>::set_sub(const ExactFloat& A, const ExactFloat& B, const ParallelContext& ctx) {
    constexpr const char* location = "ExactFloat::set_sub()";
    if (B.L == 0 && A.L != 0) return set_ExactFloat(A, ctx);
    if (B.L == 0) throw UnsupportedZeroException(location, "Zero was encountered.");
    auto negative = [&] {
        throw UnsupportedNegativeException(location, "A negative value was encountered.");
    };
    if (A.L == 0 || A.positive != B.positive || A.top() < B.top()) negative();
    const spL_t low = std::min(A.exp, B.exp);
    const auto length = static_cast<upL_t>(A.top() - low);
    require_capacity(location, capacity, length);
    T = base;
    exp = low;
    positive = A.positive;
    hash = Hash61::sub(A.hash, B.hash);
    const wtype borrow = range_sub(T, low, length, PlacedWords<wtype>{A.T, A.L, A.exp},
                                   PlacedWords<wtype>{B.T, B.L, B.exp}, ctx);
    L = borrow != 0 ? 0 : bp_strip<wtype>(0, T, length, ctx);
    if (L != 0) return;
    clear();
    if (borrow != 0) negative();
    throw UnsupportedZeroException(location, "Zero was encountered.");
}

template struct ExactFloat<std::uint32_t>;
template struct ExactFloat<std::uint64_t>;

}  // namespace lumo
