/// One transform of one length: what a product of that length needs, and its steps.
///
/// A descriptor of C = words() words multiplies in a ring in which 2^(C W) is +1 or -1 (W bits a word).
/// An operand has at most C words. A product of at most C words is exact. A longer one wraps: with
/// v = AL + BL - C > 0 the words [v, C) of the output are those of the true product, except that word v
/// may be off by a carry or borrow of one that ripples upward from the wrapped words below it.
///
/// Windows are (s, L): words s .. L - 1 of the product go to T[0 .. L - s).
/// Work areas: ctx.scratch holds at least scratch_bytes(), arrays at least array_bytes() each, all aligned
/// to 128 bytes. Held images are opaque; they are only read by the inverse steps unless they are `out`.
#pragma once

#include <new>

#include "lumo/multiply/multiply_context.h"

namespace lumo {

template <typename wtype>
class TransformDescriptor {
 public:
    virtual ~TransformDescriptor() = default;

    upL_t length_bits() const { return bits; }
    upL_t words() const { return bits / WordTraits<wtype>::bits; }
    upL_t array_bytes() const { return array; }
    upL_t scratch_bytes() const { return scratch; }

    /// Same ring, same layout: images made by one may be used by the other.
    virtual bool same_transform(const TransformDescriptor& other) const = 0;

    /// Image of A (AL <= words(), AL may be 0) into `image`.
    /// Throws ConvolutionTooSmallException "Convolution length is too small." for a longer operand.
    virtual void forward(const MultiplyContext& ctx, const wtype* A, upL_t AL, void* image) const = 0;
    /// T := window of the square of the operand behind F. `out` is working space of one array; it may be F.
    virtual void inverse_fsqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out,
                              const void* F) const = 0;
    /// T := window of the product of the operands behind F and G. `out` may be F or G.
    virtual void inverse_fmul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out,
                              const void* F, const void* G) const = 0;

    /// The least bytes of `part` in mul_in_parts().
    virtual upL_t least_part_bytes() const { return array; }
    /// T := window of A B, nothing kept; AL and BL at least 1. `image` takes A's image, `part` B's, or as
    /// much of it at a time as there is room for. T may overlap the operands.
    virtual void mul_in_parts(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                              upL_t AL, const wtype* B, upL_t BL, void* image, AlignedBufferC part) const {
        void* second = part.spawn(array);
        forward(ctx, A, AL, image);
        forward(ctx, B, BL, second);
        inverse_fmul(ctx, T, s, L, image, image, second);
    }

 protected:
    TransformDescriptor(upL_t length_bits_, upL_t array_bytes_, upL_t scratch_bytes_)
        : bits(length_bits_), array(array_bytes_), scratch(scratch_bytes_) {}
    TransformDescriptor(const TransformDescriptor&) = default;
    TransformDescriptor& operator=(const TransformDescriptor&) = default;

 private:
    upL_t bits;
    upL_t array;
    upL_t scratch;
};

/// Storage for one descriptor on the stack of whoever multiplies.
template <typename wtype>
class TransformHolder {
 public:
    static constexpr std::size_t CAPACITY = 256;
    TransformHolder() = default;
    ~TransformHolder() { clear(); }
    TransformHolder(const TransformHolder&) = delete;
    TransformHolder& operator=(const TransformHolder&) = delete;

    template <typename Descriptor, typename... Args>
    Descriptor& emplace(Args&&... args) {
        static_assert(sizeof(Descriptor) <= CAPACITY);
        clear();
        auto* made = new (storage) Descriptor(std::forward<Args>(args)...);
        held = made;
        return *made;
    }
    const TransformDescriptor<wtype>& operator*() const { return *held; }
    const TransformDescriptor<wtype>* operator->() const { return held; }

 private:
    void clear() {
        if (held) held->~TransformDescriptor<wtype>();
        held = nullptr;
    }
    alignas(64) unsigned char storage[CAPACITY];
    TransformDescriptor<wtype>* held = nullptr;
};

}  // namespace lumo
