/// The factor that P, Q and R over a long run of terms have in common, and exact division by it.
///
/// Let R(k) and Q(k) each contain m factors a k + b or more, the a products of 2 and 3. Of any q = p^j
/// consecutive k, p > 3 a prime, exactly one makes a k + b a multiple of q. A summand of P over a run of n +
/// 1 terms is a multiple of R of some first x of them and of Q of some last y, of all but one: x + y = n. So
/// each j gives p at least m ([x / q] + [y / q]) times in it, and that is not less than m ([n / q] - 1). P, Q
/// and R are multiples of
///     G = H^m,   H = n! / lcm(1 .. n) without its factors 2 and 3,
/// wherever the run begins. Of 8,000 terms of the series of Pi by the Chudnovskys these are 30 of 85 to 130
/// bits a term.
///
/// A quotient below 2^N follows from any product by the inverse of G modulo 2^N + 1, which is the ring of
/// the FFT: one forward and one inverse transform of the quotient's length.
#pragma once

#include <vector>

#include "lumo/multiply/fft/fft_sizes.h"
#include "lumo/numbers/objects/exact_float.h"

namespace lumo {

template <typename wtype>
class CommonFactor {
 public:
    /// G for runs of at least `terms` terms and m = `power`, and quotients of at most ring.limit_bits - 1
    /// bits.
    CommonFactor(upL_t terms, unsigned power, const FftSize& ring);

    /// ln G, rounded down.
    double size() const { return log_size; }
    upL_t image_bytes() const { return ring.array_bytes(); }
    upL_t make_bytes() const { return 2 * align_bytes(words() * sizeof(wtype)) + divide_bytes(); }
    upL_t divide_bytes() const { return ring.array_bytes() + ring.scratch_bytes(); }

    /// Makes the inverse's image in `image`, of image_bytes() on 128 bytes, which stays alive as long as
    /// divide() is called. ctx.scratch holds make_bytes(); the tables of the FFT reach the ring.
    void make(const MultiplyContext& ctx, void* image);
    /// number := number / G, for multiples of G of at most twice the words of the ring; the hash follows from
    /// number's. After make(); any number of threads may call it. ctx.scratch holds divide_bytes().
    void divide(const MultiplyContext& ctx, ExactFloat<wtype>& number) const;

 private:
    struct PrimePower {
        std::uint32_t p;
        std::uint32_t exponent;  ///< in H
    };
    upL_t words() const { return ring.limit_bits / WordTraits<wtype>::bits; }
    std::vector<PrimePower> primes;
    unsigned power;
    FftSize ring;
    double log_size = 0;
    std::uint64_t inverse_hash;  ///< of G, modulo 2^61 - 1
    const void* inverse = nullptr;
};

}  // namespace lumo
