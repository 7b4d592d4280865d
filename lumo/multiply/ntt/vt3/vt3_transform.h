/// The multi-prime number-theoretic transform of one length, on bytes: columns, rows, and back. Memory comes
/// from the caller; the words of a product do not depend on how the work is cut.
/// Sources: Crandall and Fagin (1994) for weighted convolution; Bailey (1990) for the two-level order;
/// Good (1958) for the odd factor; Shoup, Montgomery (1985) for the arithmetic.
#pragma once

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/multiply/ntt/vt3/vt3_footprint.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"

namespace lumo {

/// Primes [from, to) of a transform.
struct Vt3Range {
    unsigned from, to;
};

/// Bytes of a product that are wanted, and where they go. Multiples of 4.
struct Vt3Window {
    unsigned char* bytes;
    upL_t begin, end;
};

class Vt3Transform {
 public:
    Vt3Transform(const Vt3Size& size, upL_t tds);

    const Vt3Size& size() const { return length; }
    const Vt3Footprint& footprint() const { return space; }
    const kernels::Vt3Kernels& kernels() const { return *table; }

    /// Residues of the primes in the range into `image`, after the column pass.
    void columns(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
                 const unsigned char* operand, upL_t bytes, Vt3Range primes) const;
    /// Ends the transform of an image.
    void rows(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
              Vt3Range primes) const;
    /// out := product before the last pass. Images that are not yet through rows() are taken through it and
    /// spoilt. `out`, f and g may be the same.
    void products(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* out, std::uint64_t* f,
                  bool f_after_columns, std::uint64_t* g, bool g_after_columns, Vt3Range primes) const;
    void products(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* out,
                  const std::uint64_t* f, const std::uint64_t* g, Vt3Range primes) const;
    /// Window of the product of all primes, modulo 2^bits - 1; returns the sum of the words of the whole
    /// product modulo 2^64 - 1. Throws ConvolutionFailedException "Coefficient is too large.".
    std::uint64_t leave(const ParallelContext& ctx, AlignedBufferC scratch, const std::uint64_t* image,
                        Vt3Window window) const;

 private:
    /// group_of(prime, twist, offset of the group in an image, group) for all groups of the primes.
    template <typename Group>
    void for_groups(const ParallelContext& ctx, AlignedBufferC scratch, Vt3Range primes,
                    Group&& group_of) const;
    void twists(AlignedBufferC& scratch, kernels::Vt3Twist* twist, Vt3Range primes) const;
    const kernels::Vt3Prime& prime(unsigned i) const;

    Vt3Size length;
    kernels::Vt3Shape shape;
    const kernels::Vt3Kernels* table;
    const Vt3PrimeSet* set;
    Vt3Footprint space;
};

/// Sum of the words of an operand modulo 2^64 - 1.
std::uint64_t vt3_sum(const ParallelContext& ctx, const unsigned char* bytes, upL_t count);

}  // namespace lumo
