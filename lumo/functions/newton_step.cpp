#include "lumo/functions/newton_step.h"

namespace lumo {

namespace {

[[noreturn]] void fail(const char* location, std::string text) {
    throw AlgorithmFailedException(location, std::move(text));
}

[[noreturn]] void fail_with_error(const char* location, const char* side, upL_t q, spL_t top) {
    fail(location, std::string(side) + "-Estimate -> Convergence Failure:\n    Maximum Error = " +
                       std::to_string(-static_cast<spL_t>(q)) +
                       "\n    Actual Error  = " + std::to_string(top));
}

template <typename wtype>
[[noreturn]] void fail_with_word(const char* location, wtype word) {
    fail(location, "Convergence Failure:\n    top = " + std::to_string(word));
}

template <typename wtype>
Estimate checked(const char* location, const BigFloat<wtype>& E, upL_t q, Estimate side) {
    if (E.is_zero()) return Estimate::exact;
    if (2 - static_cast<spL_t>(q) < E.top())
        fail_with_error(location, side == Estimate::over ? "Over" : "Under", q, E.top());
    return side;
}

/// T := A / n to p + 2 words, from the top down. For divisors of all 32 bits, which the precomputed inverses
/// of the parallel division do not take.
template <typename wtype>
void divide_by_large_word(BigFloat<wtype>& T, upL_t p, const BigFloat<wtype>& A, wtype n) {
    require_capacity("NewtonStep::divide_by_word()", T.capacity, p + 2);
    T.T = T.base;
    T.L = p + 2;
    T.exp = A.top() - static_cast<spL_t>(T.L);
    T.positive = A.positive;
    unsigned __int128 rest = 0;
    for (upL_t i = T.L; i-- > 0;) {
        rest = rest << WordTraits<wtype>::bits | A.word_at(T.exp + static_cast<spL_t>(i));
        T.T[i] = static_cast<wtype>(rest / n);
        rest %= n;
    }
    while (T.L > 0 && T.T[T.L - 1] == 0) T.L--;
}

}  // namespace

template <typename wtype>
Estimate NewtonStep<wtype>::distance_from_one(const char* location, Number& E, upL_t q) {
    if (E.top() > 1) fail_with_word(location, E.word_at(E.top() - 1));
    const wtype units = E.word_at(0);
    if (units > 1) fail_with_word(location, units);
    if (units == 1) {
        E.truncate_above(0);
        return checked(location, E, q, Estimate::over);
    }
    // Below 2^-W the product is nowhere near one, and the negation below would not see the missing words.
    if (E.top() != 0 || E.is_zero()) fail_with_error(location, "Under", q, 0);
    E.two_complement();
    return checked(location, E, q, Estimate::under);
}

template <typename wtype>
Estimate NewtonStep<wtype>::distance_from_one_wrapped(const char* location, Number& E, spL_t te, upL_t q,
                                                      wtype lowest_under) {
    if (E.is_zero()) return Estimate::exact;
    const wtype sign = E.word_at(te - 1);
    if (sign == 0) return checked(location, E, q, Estimate::over);
    if (sign < lowest_under) fail_with_word(location, sign);
    E.two_complement();
    return checked(location, E, q, Estimate::under);
}

template <typename wtype>
void NewtonStep<wtype>::halve(const ParallelContext& ctx, Number& E) {
    E.mul_uW(wtype(1) << (WordTraits<wtype>::bits - 1), ctx);
    E.exp--;
}

template <typename wtype>
void NewtonStep<wtype>::divide_by_word(const ParallelContext& ctx, Number& T, upL_t p, const Number& A,
                                       std::uint32_t n) {
    using signed_word = typename WordTraits<wtype>::signed_word;
    if (n == 1 || A.is_zero()) {
        T.set_BigFloat(p, A, ctx);
    } else if ((n & (n - 1)) == 0) {
        T.set_BigFloat(p, A, ctx);
        T.mul_uW(static_cast<wtype>(-1) / n + 1, ctx);  // 2^W / n
        T.exp--;
    } else if (sizeof(wtype) == 4 && n >> 31) {
        divide_by_large_word(T, p, A, static_cast<wtype>(n));
    } else {
        T.set_div_sW(p, ctx, A, static_cast<signed_word>(n));
    }
}

template <typename wtype>
void NewtonStep<wtype>::correct(const ParallelContext& ctx, Number& T, upL_t p, const Number& R,
                                const Number& S, Estimate estimate) {
    if (estimate == Estimate::exact || S.is_zero()) {
        T.set_BigFloat(p, R, ctx);
        return;
    }
    if (estimate == Estimate::over)
        T.set_sub(p, ctx, R, S);
    else
        T.set_add(p, ctx, R, S);
    if (T.L > p) T.purturb_up(0);
}

template <typename wtype>
void NewtonStep<wtype>::residual(const char* location, const ParallelContext& ctx, Number& r, upL_t p,
                                 const Number& target, const Number& product, spL_t cut, bool positive) {
    const wtype A = product.word_at(cut - 1);
    const wtype B = target.word_at(cut - 1);
    const auto step = static_cast<wtype>(B - A);
    if (step == 0) {
        if (product.is_zero()) {
            r.set_BigFloat(p, target, ctx);
        } else if (target.is_zero()) {
            r.set_BigFloat(p, product, ctx);
            r.positive = !positive;
        } else {
            r.set_sub(p, ctx, target, product);
        }
    } else if (step == 1 || (step == 2 && B == 0)) {
        r.set_rsub(p, ctx, target, product, cut, positive);
    } else if (step == static_cast<wtype>(-1)) {
        r.set_rsub(p, ctx, product, target, cut, !positive);
    } else {
        fail(location,
             "Convergence Failure:\n    topA = " + std::to_string(A) + "\n    topB = " + std::to_string(B));
    }
}

template <typename wtype>
LinearWordBuffer<wtype> NewtonStep<wtype>::room_above(const Number& R) {
    const upL_t used = align_words<wtype>(static_cast<upL_t>(R.T - R.base) + R.L);
    if (used >= R.capacity) return {};
    return {R.base + used, R.capacity - used};
}

template <typename wtype>
void NewtonStep<wtype>::require_plan(const char* location, upL_t tds, upL_t planned_tds, upL_t p,
                                     upL_t planned_p) {
    if (tds > planned_tds) throw InvalidParametersException(location, "tds is larger than plan.");
    if (p > planned_p) throw InvalidParametersException(location, "p is larger than plan.");
}

template struct NewtonStep<std::uint32_t>;
template struct NewtonStep<std::uint64_t>;

}  // namespace lumo
