#include "lumo/series/common_factor.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include "lumo/multiply/fft/fft_descriptor.h"
#include "lumo/numbers/words/shoup_divider.h"
#include "lumo/series/leaf_numbers.h"

namespace lumo {
namespace {

bool is_prime(std::uint32_t p) {
    for (std::uint32_t d = 2; d * d <= p; ++d) {
        if (p % d == 0) return false;
    }
    return p > 1;
}

/// How often p divides n! / lcm(1 .. n).
std::uint32_t exponent_of(std::uint32_t p, upL_t n) {
    std::uint32_t exponent = 0;
    for (upL_t multiples = n / p; multiples > 0; multiples /= p) exponent += std::uint32_t(multiples - 1);
    return exponent;
}

/// 1 / a modulo d < 2^63, a and d having no common factor.
std::uint64_t inverse_modulo(std::uint64_t a, std::uint64_t d) {
    std::int64_t r0 = std::int64_t(d), r1 = std::int64_t(a % d), s0 = 0, s1 = 1;
    while (r1 > 1) {
        const std::int64_t q = r0 / r1;
        r0 = std::exchange(r1, r0 - q * r1);
        s0 = std::exchange(s1, s0 - q * s1);
    }
    return std::uint64_t(s1 < 0 ? s1 + std::int64_t(d) : s1);
}

/// A product S of odd primes, below 2^(W - 1) a word of it, and y with y (2^N + 1) = -1 modulo S, 0 <= y < S.
template <typename wtype>
class Modulus {
 public:
    /// N = W L.
    explicit Modulus(upL_t L) : ring_words(L) {}

    /// S := S p for a prime that is not in S; complete() before anything else is asked.
    void multiply(std::uint32_t p) {
        if (gathered >= (wtype(1) << (WordTraits<wtype>::bits - 1)) / p) complete();
        gathered *= wtype(p);
    }
    void complete() {
        if (gathered != 1) join(gathered);
        gathered = 1;
    }
    bool is_one() const { return S.size() == 1 && S[0] == 1; }
    /// T[0 .. L) := 1 / S modulo 2^N + 1.
    void invert(wtype* T) const;

 private:
    /// The next y by Garner's formula: y + S t for a word t.
    void join(wtype d);

    upL_t ring_words;
    wtype gathered = 1;
    std::vector<wtype> S{1}, y{0};
};

template <typename wtype>
void Modulus<wtype>::join(wtype d) {
    const ShoupDivider<wtype> divider(d);
    const auto inverse = [&](wtype a) { return wtype(inverse_modulo(a, d)); };
    const auto negative = [&](wtype a) { return a == 0 ? a : wtype(d - a); };
    const wtype wanted = negative(inverse(divider.add(divider.pow2W(ring_words), 1)));
    const wtype now = bp_mod(divider, y.data(), y.size(), wtype(0));
    const wtype step = inverse(bp_mod(divider, S.data(), S.size(), wtype(0)));
    const wtype t = divider.mul(divider.add(wanted, negative(now)), step);
    y.resize(S.size() + 1);
    add_product(y.data(), y.size(), S.data(), S.size(), t);
    S.resize(S.size() + 1);
    S.resize(multiply_add(S.data(), S.size() - 1, d, 0));
}

/// y + 1 + u S is a multiple w 2^N for one u below 2^N, which is made word by word from the lowest. As
/// 1 + y (2^N + 1) is a multiple of S, so is y + w, and it is S itself: 1 / S = 2^N - u.
template <typename wtype>
void Modulus<wtype>::invert(wtype* T) const {
    const upL_t n = S.size();
    wtype inverse = S[0];  // right in 3 bits, and in twice as many after each step
    for (unsigned bits = 3; bits < WordTraits<wtype>::bits; bits *= 2) inverse *= 2 - S[0] * inverse;
    std::vector<wtype> w(y);
    w.resize(n + 1);
    bp_add_scalar<wtype>(1, w.data(), n + 1);
    for (upL_t i = 0; i < ring_words; ++i) {
        const wtype u = -w[0] * inverse;
        T[i] = ~u;
        unsigned __int128 carry =
            (static_cast<unsigned __int128>(u) * S[0] + w[0]) >> WordTraits<wtype>::bits;
        for (upL_t j = 1; j < n; ++j) {
            carry += static_cast<unsigned __int128>(u) * S[j] + w[j];
            w[j - 1] = static_cast<wtype>(carry);
            carry >>= WordTraits<wtype>::bits;
        }
        w[n - 1] = static_cast<wtype>(carry);
    }
    bp_add_scalar<wtype>(1, T, ring_words);
    std::vector<wtype> sum(n + 1);
    sum[n] = bp_add(sum.data(), w.data(), y.data(), n, wtype(0));
    if (sum[n] != 0 || !std::equal(S.begin(), S.end(), sum.begin()))
        throw AlgorithmFailedException("CommonFactor::make()", "The inverse is wrong.");
}

}  // namespace

template <typename wtype>
CommonFactor<wtype>::CommonFactor(upL_t n, unsigned power_, const FftSize& ring_)
    : power(power_), ring(ring_) {
    // A prime that divides 2^N + 1 is 1 more than a multiple of twice the power of two in N.
    require(n / 2 <= upL_t(2) << std::countr_zero(ring.limit_bits), "Too long a run for the ring.",
            "CommonFactor::CommonFactor()");
    std::uint64_t hash = 1;
    for (std::uint32_t p = 5; p <= n / 2; p += 2) {
        if (!is_prime(p)) continue;
        primes.push_back({p, exponent_of(p, n)});
        const std::uint64_t times = power * upL_t(primes.back().exponent);
        log_size += double(times) * std::log(double(p));
        hash = Hash61::mul(hash, Hash61::pow(p, times));
    }
    log_size -= log_size * 0x1p-40;
    inverse_hash = Hash61::pow(hash, Hash61::MODULUS - 2);
}

template <typename wtype>
void CommonFactor<wtype>::make(const MultiplyContext& ctx, void* image) {
    require_capacity("CommonFactor::make()", ctx.scratch_bytes, make_bytes());
    const FftDescriptor<wtype> transform(ring);
    const upL_t C = words();
    AlignedBufferC buffer = ctx.buffer();
    wtype* x = buffer.spawn_words<wtype>(C);
    wtype* z = buffer.spawn_words<wtype>(C);
    void* array = buffer.spawn(ring.array_bytes());
    const MultiplyContext inner = ctx.with_scratch(buffer);
    // H is the product of S_i^(2^i), S_i that of the primes with bit i in their exponent; 1 / H by Horner's
    // rule.
    bool one = true;
    for (unsigned bit = std::bit_width(primes.empty() ? 0 : primes.front().exponent); bit-- != 0;) {
        if (!one) transform.sqr(inner, x, 0, C, x, C, array);
        Modulus<wtype> S(C);
        for (const PrimePower& prime : primes) {
            if (prime.exponent >> bit & 1) S.multiply(prime.p);
        }
        S.complete();
        if (S.is_one()) continue;
        S.invert(one ? x : z);
        if (!one) transform.mul(inner, x, 0, C, x, C, z, C, array, image);
        one = false;
    }
    if (one) {
        bp_zero(x, C);
        x[0] = 1;
    }
    transform.forward(inner, x, C, image);
    for (unsigned i = 1; i < power; ++i) {
        transform.forward(inner, x, C, array);
        transform.inverse_fmul(inner, x, 0, C, array, array, image);
    }
    transform.forward(inner, x, C, image);
    inverse = image;
}

/// Products in the ring, of numbers with one that is divided by G and held. One product in 2^N leaves the
/// residue 2^N, which the FFT hands out as 0: like a fault, that is seen by the check of the range.
template <typename wtype>
class CommonFactor<wtype>::Merge {
 public:
    Merge(const MultiplyContext& ctx_, const CommonFactor& factor)
        : transform(factor.ring), inverse(factor.inverse), ctx(ctx_), C(factor.words()) {
        AlignedBufferC buffer = ctx.buffer();
        words = buffer.spawn_words<wtype>(C);
        array = buffer.spawn(factor.ring.array_bytes());
        held = buffer.spawn(factor.ring.array_bytes());
        ctx = ctx.with_scratch(buffer);
    }
    /// A word array of the ring, free but while hold_quotient() runs.
    wtype* scratch() const { return words; }
    void hold_quotient(const ExactFloat<wtype>& A) {
        transform.forward(ctx, A.T, A.L, array);
        transform.inverse_fmul(ctx, words, 0, C, array, array, inverse);
        transform.forward(ctx, words, C, held);
    }
    /// out := A times what is held. `out` may be A.
    void multiply(wtype* out, const ExactFloat<wtype>& A) {
        transform.forward(ctx, A.T, A.L, array);
        transform.inverse_fmul(ctx, out, 0, C, array, array, held);
    }
    /// T := T + A 2^(W d), or the difference.
    void add_shifted(wtype* T, const wtype* A, upL_t d, bool difference) const {
        add(T, d, A, C - d, difference);
        add(T, 0, A + (C - d), d, !difference);
    }

 private:
    /// 2^N is -1: what leaves at the top comes back at the bottom, where it may go round once more, but for
    /// the residue 2^N, which words cannot hold.
    void add(wtype* T, upL_t at, const wtype* A, upL_t L, bool difference) const {
        using Signed = typename WordTraits<wtype>::signed_word;
        Signed carry = difference ? -Signed(bp_sub(T + at, T + at, A, L, wtype(0)))
                                  : Signed(bp_add(T + at, T + at, A, L, wtype(0)));
        carry = bp_add_scalar<wtype>(carry, T + at + L, C - at - L);
        for (int rounds = 0; carry != 0 && rounds < 2; ++rounds) carry = bp_add_scalar<wtype>(-carry, T, C);
    }

    const FftDescriptor<wtype> transform;
    const void* inverse;
    MultiplyContext ctx;
    upL_t C;
    wtype* words;
    void* array;
    void* held;
};

template <typename wtype>
void CommonFactor<wtype>::merge(const MultiplyContext& ctx, Parts<wtype>& left, const Parts<wtype>& right,
                                ExactFloat<wtype> T) const {
    const upL_t C = words();
    require(inverse, "Invalid Function Parameters:   ", "CommonFactor::merge()");
    require_capacity("CommonFactor::merge()", ctx.scratch_bytes, merge_bytes());
    for (const ExactFloat<wtype>* room : {&left.P, &left.Q, &left.R, &T})
        require_capacity("CommonFactor::merge()", room->capacity, C);
    // Of each product: bottom, sign, hash.
    const auto product = [&](const ExactFloat<wtype>& A, const ExactFloat<wtype>& B) {
        ExactFloat<wtype> result;
        result.exp = A.exp + B.exp;
        result.positive = A.positive == B.positive;
        result.hash = Hash61::mul(Hash61::mul(A.hash, B.hash), inverse_hash);
        return result;
    };
    const auto accept = [&](ExactFloat<wtype>& number, const ExactFloat<wtype>& like) {
        number.T = number.base;
        number.L = bp_strip<wtype>(0, number.T, C);
        number.exp = like.exp;
        number.positive = like.positive;
        number.hash = like.hash;
        if (number.L == 0) number.clear_keeping(like.hash);
    };
    const ExactFloat<wtype> PQ = product(left.P, right.Q), RP = product(left.R, right.P);
    Merge merge(ctx, *this);

    // Right's parts stand in left's buffers: each is read before its place is written.
    merge.hold_quotient(right.Q);
    merge.multiply(T.base, left.P);
    const ExactFloat<wtype> Q = product(left.Q, right.Q);
    merge.multiply(left.Q.base, left.Q);
    accept(left.Q, Q);
    left.Q.strip_lzs_aligned();

    merge.hold_quotient(left.R);
    merge.multiply(merge.scratch(), right.P);
    if (right.need_R) {
        const ExactFloat<wtype> R = product(left.R, right.R);
        merge.multiply(left.R.base, right.R);
        accept(left.R, R);
        left.R.strip_lzs_aligned();
    }

    // The product with the higher bottom is added to the other.
    ExactFloat<wtype> sum = PQ;
    const wtype *low = T.base, *high = merge.scratch();
    if (RP.exp < PQ.exp) {
        sum = RP;
        std::swap(low, high);
    }
    wtype* const P = left.P.base;
    bp_copy(P, low, C);
    merge.add_shifted(P, high, static_cast<upL_t>(std::max(PQ.exp, RP.exp) - sum.exp),
                      PQ.positive != RP.positive);
    if (P[C - 1] >> (WordTraits<wtype>::bits - 1) != 0) {
        // 2^N + 1 - P
        bp_not(P, P, C);
        bp_add_scalar<wtype>(2, P, C);
        sum.positive = !sum.positive;
    }
    sum.hash = Hash61::add(PQ.hash, RP.hash);
    accept(left.P, sum);
}

template class CommonFactor<std::uint32_t>;
template class CommonFactor<std::uint64_t>;

}  // namespace lumo
