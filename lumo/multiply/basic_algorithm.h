/// An algorithm for large products as the tables know it. Lengths are words of `wtype` unless named bits or
/// bytes; sizes do not depend on the instruction set. Nothing in a product allocates.
#pragma once

#include <limits>

#include "lumo/multiply/transform_descriptor.h"

namespace lumo {

/// Bytes that products up to some length need: image of one operand, work area, and the least that the second
/// operand of a product takes when no image of it is kept; 0 stands for a whole image.
struct BufferSizes {
    upL_t array_bytes = 0;
    upL_t scratch_bytes = 0;
    upL_t part_bytes = 0;
    upL_t least_part() const { return part_bytes != 0 ? part_bytes : array_bytes; }
    upL_t total() const { return 2 * array_bytes + scratch_bytes; }
    void merge(const BufferSizes& other) {
        part_bytes = least_part() > other.least_part() ? least_part() : other.least_part();
        array_bytes = array_bytes > other.array_bytes ? array_bytes : other.array_bytes;
        scratch_bytes = scratch_bytes > other.scratch_bytes ? scratch_bytes : other.scratch_bytes;
    }
};

template <typename wtype>
class BasicAlgorithm {
 public:
    virtual ~BasicAlgorithm() = default;

    const upL_t max_bits;   ///< longest product
    const char* const tag;  ///< three-letter key
    const char* const name;
    const char* const version;
    const char* const description;

    /// Grows twiddle tables so that products of `length` words can run. Not thread-safe: call before work
    /// starts.
    virtual void ensure_tables(upL_t length) const = 0;
    /// Fills maxima over all lengths up to `length`; returns the total bytes of scratch a product may need.
    virtual upL_t max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) const = 0;
    /// Descriptor whose words() is at least `length`.
    virtual void params(TransformHolder<wtype>& out, upL_t length, upL_t tds) const = 0;

    /// T[0 .. 2 AL) := A^2. T must not overlap A.
    virtual void sqr(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL) const {
        sqr_partial(ctx, T, 0, 2 * AL, A, AL);
    }
    /// T[0 .. AL + BL) := A B. T must not overlap the operands.
    virtual void mul(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL, const wtype* B,
                     upL_t BL) const {
        mul_partial(ctx, T, 0, AL + BL, A, AL, B, BL);
    }
    /// T[0 .. L - s) := words [s, L) of A^2.
    virtual void sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                             upL_t AL) const = 0;
    /// T[0 .. L - s) := words [s, L) of A B.
    virtual void mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                             const wtype* B, upL_t BL) const = 0;
    /// The total bytes for products in the form that needs the least memory.
    virtual upL_t max_buffer_size(upL_t length, upL_t tds) const {
        BufferSizes sizes;
        return max_buffer_sizes(sizes, length, tds);
    }
    /// As mul_partial, in that form.
    virtual void mul_small(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                           const wtype* B, upL_t BL) const {
        mul_partial(ctx, T, s, L, A, AL, B, BL);
    }

 protected:
    /// Bits of `length` words; a length whose bits do not fit comes out beyond all rows.
    static constexpr upL_t bits_of(upL_t length) {
        constexpr upL_t most = std::numeric_limits<upL_t>::max();
        return length > most / WordTraits<wtype>::bits ? most : length * WordTraits<wtype>::bits;
    }

    BasicAlgorithm(upL_t max_bits_, const char* tag_, const char* name_, const char* version_,
                   const char* description_)
        : max_bits(max_bits_),
          tag(tag_),
          name(name_ ? name_ : tag_),
          version(version_ ? version_ : tag_),
          description(description_ ? description_ : name) {}
};

}  // namespace lumo
