#include "lumo/multiply/basecase/bkt_descriptor.h"

#include "lumo/multiply/basecase/bkt_sizes.h"
#include "lumo/multiply/basecase/karatsuba.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

namespace {

/// An image is the length of the operand and its words.
template <typename wtype>
struct Image {
    upL_t length;
    const wtype* words;
    explicit Image(const void* image)
        : length(*static_cast<const upL_t*>(image)),
          words(reinterpret_cast<const wtype*>(static_cast<const upL_t*>(image) + 1)) {}
    bool is_zero() const { return length == 0; }
};

/// P[0 .. C) := P[0 .. PL) modulo 2^(C W) - 1, for PL <= 2C.
template <typename wtype>
void wrap(wtype* P, upL_t PL, upL_t C) {
    if (PL <= C) {
        bp_zero(P + PL, C - PL);
        return;
    }
    wtype carry = bp_add<wtype>(P, P, P + C, PL - C, 0);
    if (carry != 0) carry = static_cast<wtype>(bp_add_scalar<wtype>(1, P + (PL - C), 2 * C - PL));
    if (carry != 0) bp_add_scalar<wtype>(1, P, C);
}

}  // namespace

template <typename wtype>
BktDescriptor<wtype>::BktDescriptor(upL_t length)
    : TransformDescriptor<wtype>(length * WordTraits<wtype>::bits, bkt_array_bytes<wtype>(length),
                                 bkt_scratch_bytes<wtype>(length)) {}

template <typename wtype>
bool BktDescriptor<wtype>::same_transform(const TransformDescriptor<wtype>& other) const {
    const auto* same = dynamic_cast<const BktDescriptor*>(&other);
    return same && same->words() == this->words();
}

template <typename wtype>
void BktDescriptor<wtype>::forward(const MultiplyContext&, const wtype* A, upL_t AL, void* image) const {
    if (AL > this->words())
        throw ConvolutionTooSmallException("BKT", "Convolution length is too small.", this->length_bits(),
                                           AL * WordTraits<wtype>::bits);
    auto* length = static_cast<upL_t*>(image);
    *length = AL;
    bp_copy(reinterpret_cast<wtype*>(length + 1), A, AL);
}

template <typename wtype>
void BktDescriptor<wtype>::inverse_fsqr(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void* out,
                                        const void* F) const {
    inverse_fmul(ctx, T, s, L, out, F, F);
}

template <typename wtype>
void BktDescriptor<wtype>::inverse_fmul(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, void*,
                                        const void* F, const void* G) const {
    const upL_t C = this->words();
    require(s <= L && L <= C, "Invalid Function Parameters:   ", "BktDescriptor::inverse_fmul()");
    const Image<wtype> a(F), b(G);
    if (a.is_zero() || b.is_zero()) return bp_zero(T, L - s);

    using namespace Basecase;
    const upL_t PL = a.length + b.length;
    const bool square = F == G;
    const upL_t deeper = square ? sqr_scratch<wtype>(a.length) : mul_scratch<wtype>(a.length, b.length);
    AlignedBufferC buffer = ctx.buffer();
    wtype* P = buffer.spawn_words<wtype>(std::max(PL, C) + deeper);
    wtype* levels = P + std::max(PL, C);
    if (square)
        sqrK(P, a.words, a.length, levels);
    else
        mulK(P, a.words, a.length, b.words, b.length, levels);
    wrap(P, PL, C);
    bp_copy(T, P + s, L - s);
}

template class BktDescriptor<std::uint32_t>;
template class BktDescriptor<std::uint64_t>;

}  // namespace lumo
