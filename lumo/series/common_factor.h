/// The factor that P, Q and R over a long run of terms have in common, and merges that leave it out.
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
/// A quotient below 2^N follows from a product and the inverse of G modulo 2^N + 1, which is the ring of the
/// FFT. Each product of a merge has either Q of the right part or R of the left one for a factor: with these
/// two divided by G in the ring all results are, and the merge needs no longer transforms than its results.
/// It makes four transforms more than one that divides nothing, whose transforms are longer by G.
#pragma once

#include <vector>

#include "lumo/multiply/fft/fft_sizes.h"
#include "lumo/series/bsr_objects.h"

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
    upL_t make_bytes() const { return 2 * align_bytes(words() * sizeof(wtype)) + transform_bytes(1); }
    upL_t merge_bytes() const { return align_bytes(words() * sizeof(wtype)) + transform_bytes(2); }

    /// Makes the inverse's image in `image`, of image_bytes() on 128 bytes, which stays alive as long as
    /// merge() is called. ctx.scratch holds make_bytes(); the tables of the FFT reach the ring.
    void make(const MultiplyContext& ctx, void* image);
    /// left := the range that left and right make, divided by G, of which all its parts are multiples. As
    /// bsr_merge() in storage and hashes, but that numbers have at most the words of the ring, and results
    /// one word less. After make(); any number of threads may call it. ctx.scratch holds merge_bytes().
    void merge(const MultiplyContext& ctx, Parts<wtype>& left, const Parts<wtype>& right,
               ExactFloat<wtype> T) const;

 private:
    struct PrimePower {
        std::uint32_t p;
        std::uint32_t exponent;  ///< in H
    };
    class Merge;
    upL_t words() const { return ring.limit_bits / WordTraits<wtype>::bits; }
    upL_t transform_bytes(upL_t images) const { return images * ring.array_bytes() + ring.scratch_bytes(); }
    std::vector<PrimePower> primes;
    unsigned power;
    FftSize ring;
    double log_size = 0;
    std::uint64_t inverse_hash;  ///< of G, modulo 2^61 - 1
    const void* inverse = nullptr;
};

}  // namespace lumo
