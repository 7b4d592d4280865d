/// A number-theoretic transform of one length as a transform of words: multiplies modulo 2^length_bits - 1.
/// Every product is checked modulo 2^64 - 1, which divides the modulus, so wrapped ones are checked too.
#pragma once

#include "lumo/multiply/ntt/ntt_parts.h"
#include "lumo/multiply/transform_descriptor.h"

namespace lumo {

/// `Transform` is one of the transforms of this folder: residues of several primes, on bytes.
template <typename wtype, typename Transform>
class NttDescriptor final : public TransformDescriptor<wtype> {
 public:
    /// `tds` bounds into how many pieces the work is cut; scratch grows with it.
    NttDescriptor(const typename Transform::Size& size, upL_t tds);

    const typename Transform::Size& size() const { return transform.size(); }

    bool same_transform(const TransformDescriptor<wtype>& other) const override;
    void forward(const MultiplyContext& ctx, const wtype* A, upL_t AL, void* image) const override;
    void inverse_fsqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out,
                      const void* F) const override;
    void inverse_fmul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out, const void* F,
                      const void* G) const override;

    upL_t least_part_bytes() const override { return align_bytes(prime_bytes()); }
    void mul_in_parts(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                      const wtype* B, upL_t BL, void* image, AlignedBufferC part) const override;

    /// T := window of A B, or of A^2 if B is null, with array_a of array_bytes() and array_b of
    /// group x prime_bytes() bytes (none for a square): B goes through it by groups of primes.
    void multiply(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                  const wtype* B, upL_t BL, void* array_a, void* array_b, unsigned group) const;
    upL_t prime_bytes() const { return transform.footprint().prime; }
    /// Primes of the second operand to take at a time, at least one, for `room` bytes: in equal shares.
    upL_t fitting_primes(upL_t room) const;

 private:
    explicit NttDescriptor(const Transform& made);
    std::uint64_t& sum_of(void* image) const;
    void check_length(upL_t AL) const;
    std::uint64_t leave(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const void* image) const;
    static void check(bool right);
    Transform transform;
};

}  // namespace lumo
