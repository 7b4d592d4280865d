/// The transform modulo three 63-bit primes of one length, on bytes: columns, rows, and back. Scalar, for
/// lengths beyond the vector transforms and as a second opinion on theirs. Memory comes from the caller; the
/// words of a product do not depend on how the work is cut.
/// Sources: Bailey (1990) for the two-level order; Good (1958) for the odd factor.
#pragma once

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/multiply/ntt/n64/n64_primes.h"
#include "lumo/multiply/ntt/n64/n64_sizes.h"
#include "lumo/multiply/ntt/ntt_parts.h"

namespace lumo {

class N64Transform {
 public:
    using Size = N64Size;
    using Footprint = N64Footprint;
    static constexpr NttIdentity IDENTITY{"N64", "64-bit NTT", "NTT64", N64_MAX_BITS};
    static std::span<const Size> sizes() { return n64_sizes(); }
    static const Size& size_for(upL_t bits) { return n64_size_for(bits); }
    static constexpr bool PRIME_BY_PRIME = false;

    N64Transform(const N64Size& size, upL_t tds);

    const N64Size& size() const { return length; }
    const N64Footprint& footprint() const { return space; }
    unsigned primes() const { return N64_PRIMES; }
    /// Images of the one may be used by the other.
    bool shares_images_with(const N64Transform& other) const { return length == other.length; }

    /// Residues of the primes in the range into `image`, after the column pass. Returns the sum of the
    /// operand's words modulo 2^64 - 1, of which the last may be cut short.
    std::uint64_t columns(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
                          const unsigned char* operand, upL_t bytes, PrimeRange range) const;
    /// Ends the transform of an image.
    void rows(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* image,
              PrimeRange range) const;
    /// out := product before the last pass. Images that are not yet through rows() are taken through it and
    /// spoilt. `out`, f and g may be the same.
    void products(const ParallelContext& ctx, AlignedBufferC scratch, std::uint64_t* out, std::uint64_t* f,
                  bool f_after_columns, std::uint64_t* g, bool g_after_columns, PrimeRange range) const;
    /// Window of the product of all primes, modulo 2^bits - 1.
    NttOutcome leave(const ParallelContext& ctx, AlignedBufferC scratch, const std::uint64_t* image,
                     NttWindow window) const;

 private:
    /// row_of(prime, offset of the row in an image, row) for all rows of the primes.
    template <typename Row>
    void for_rows(const ParallelContext& ctx, PrimeRange range, Row row_of) const;
    /// What the column pass leaves of row r is the ring x^C = root^C.
    std::uint64_t root_of_row(const N64Prime& prime, upL_t r, bool inverse) const;
    void row_forward(const N64Prime& prime, std::uint64_t* x, upL_t r) const;
    void row_inverse(const N64Prime& prime, std::uint64_t* x, upL_t r) const;

    N64Size length;
    const N64PrimeSet* set;
    N64Footprint space;
};

}  // namespace lumo
