/// The multi-prime number-theoretic transform of one length, on bytes: columns, rows, and back. Memory comes
/// from the caller; the words of a product do not depend on how the work is cut.
/// Sources: Crandall and Fagin (1994) for weighted convolution; Bailey (1990) for the two-level order;
/// Good (1958) for the odd factor; Shoup, Montgomery (1985) for the arithmetic.
#pragma once

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/multiply/ntt/ntt_parts.h"
#include "lumo/multiply/ntt/vt3/vt3_footprint.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"

namespace lumo {

class Vt3Transform {
 public:
    using Size = Vt3Size;
    using Footprint = Vt3Footprint;
    static constexpr NttIdentity IDENTITY{"VT3", "VST Algorithm v3", "VSTv3", VT3_MAX_BITS};
    static std::span<const Size> sizes() { return vt3_sizes(); }
    static const Size& size_for(upL_t bits) { return vt3_size_for(bits); }
    static constexpr bool PRIME_BY_PRIME = false;

    Vt3Transform(const Vt3Size& size, upL_t tds);

    const Vt3Size& size() const { return length; }
    const Vt3Footprint& footprint() const { return space; }
    unsigned primes() const { return length.n; }
    /// Images of the one may be used by the other.
    bool shares_images_with(const Vt3Transform& other) const {
        return length == other.length && even == other.even && odd == other.odd;
    }

    /// Residues of the primes in the range into `image`, after the column pass. Returns the sum of the
    /// operand's words modulo 2^64 - 1, of which the last may be cut short.
    std::uint64_t columns(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
                          const unsigned char* operand, upL_t bytes, PrimeRange range) const;
    /// Ends the transform of an image.
    void rows(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
              PrimeRange range) const;
    /// out := product before the last pass. f may be spoilt if it is not yet through rows(). `out`, f and g
    /// may be the same.
    void products(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* out, std::uint64_t* f,
                  bool f_after_columns, std::uint64_t* g, bool g_after_columns, PrimeRange range) const;
    /// Window of the product of all primes, modulo 2^bits - 1.
    NttOutcome leave(const ParallelContext& ctx, AlignedBufferC scratch, const std::uint64_t* image,
                     NttWindow window) const;

 protected:
    /// With kernels of their own for the primes of even and of odd places.
    Vt3Transform(const Vt3Size& size, upL_t tds, const kernels::Vt3Kernels& even_kernels,
                 const kernels::Vt3Kernels& odd_kernels);

 private:
    /// group_of(kernels, prime, twist, offset of the group in an image, group, room for a group, lines of the
    /// group behind it that are worth fetching) for all groups of the primes.
    template <typename Group>
    void for_groups(const ParallelContext& ctx, AlignedBufferC scratch, PrimeRange range,
                    Group&& group_of) const;
    bool divides_primes(PrimeRange range) const;
    void twists(AlignedBufferC& scratch, kernels::Vt3Twist* twist, PrimeRange range) const;
    const kernels::Vt3Kernels& kernels(unsigned i) const { return i % 2 ? *odd : *even; }
    const kernels::Vt3Prime& prime(unsigned i) const;
    void check_rounding() const;
    /// By a join of the kernels, which know their own residues of up to 9 primes.
    bool joined_by_kernels() const { return even == odd && length.n <= 9; }

    Vt3Size length;
    kernels::Vt3Shape shape;
    const kernels::Vt3Kernels *even, *odd;
    const Vt3PrimeSet* set;
    Vt3Footprint space;
};

}  // namespace lumo
