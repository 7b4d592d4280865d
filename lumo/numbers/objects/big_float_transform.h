/// Held forward transforms of big floats, and products over a window of positions.
///
/// Windows [ie, te) are absolute word positions; two guard words below ie are computed too. Operands are cut
/// by pointer to the words that reach the window, also one whose image is kept: each cut costs less than one
/// unit of the lowest guard word. The transform may be shorter than the product: what wraps around falls
/// outside the window and its guard words, else ConvolutionTooSmallException "ie = .., te = ..". It costs one
/// unit of the lowest word at most. Words of the true
/// product at or above te are dropped (the result is then the product modulo 2^(W te), always taken as a
/// magnitude with the product's sign). A window that misses the product gives zero.
/// T may share storage with plain operands: they are read completely before T is written.
/// The result is not stripped of low zeros; its top zero words are dropped.
#pragma once

#include "lumo/numbers/objects/big_float.h"
#include "lumo/numbers/objects/held_image.h"

namespace lumo {

template <typename wtype>
class BigFloatTransformR : public HeldImage<wtype> {
 public:
    using Number = BigFloat<wtype>;
    using Helper = TransformHelper<wtype>;
    using HeldImage<wtype>::HeldImage;

    spL_t exp() const { return this->e; }
    spL_t top() const { return this->e + static_cast<spL_t>(this->L); }

    /// Image of the top p + 2 words of A. TransformTooSmallException "Transform length is too small." beyond
    /// the descriptor's words().
    void forward(const Helper& helper, const Number& A, upL_t p);

    // Slot letters: r plain, f held, x nothing kept. A plain operand that is not kept uses array 0 of the
    // helper, which the caller must not hold an image in.
    static void sqr_r_x(const Helper& helper, Number& T, spL_t ie, spL_t te, const Number& A);
    /// With array 0 alone: B's image is made, in parts if need be, in what the work area has beyond the
    /// descriptor's scratch_bytes(), at least least_part_bytes().
    static void mul_rr_xx(const Helper& helper, Number& T, spL_t ie, spL_t te, const Number& A,
                          const Number& B);
    /// A fresh in array 0, F held and kept.
    static void mul_rf_xf(const Helper& helper, Number& T, spL_t ie, spL_t te, const Number& A,
                          const BigFloatTransformR& F);
    /// Square of A; A's image stays in F (whose array must not be array 0).
    static void sqr_rx_xf(const Helper& helper, Number& T, spL_t ie, spL_t te, const Number& A,
                          BigFloatTransformR& F);
    /// Product; B's image stays in F (whose array must not be array 0).
    static void mul_rr_xf(const Helper& helper, Number& T, spL_t ie, spL_t te, const Number& A,
                          const Number& B, BigFloatTransformR& F);
    /// From held forms; array 0 is the working array.
    static void inverse_fsqr(const Helper& helper, Number& T, spL_t ie, spL_t te,
                             const BigFloatTransformR& F);
    static void inverse_fmul(const Helper& helper, Number& T, spL_t ie, spL_t te, const BigFloatTransformR& F,
                             const BigFloatTransformR& G);

    /// Where a product of bottom e and length L lands in a ring of C words, for the window [ie, te) with its
    /// guard words already in it. True: the window misses the product.
    struct Window {
        upL_t skip = 0;    ///< words of the output to leave out at the bottom
        upL_t length = 0;  ///< words of the result
        spL_t exp = 0;     ///< position of its lowest word
        upL_t overflow = 0;
    };
    static bool params(Window& out, spL_t ie, spL_t te, spL_t e, upL_t L, upL_t C);

 private:
    /// Where a factor's words stand.
    struct Extent {
        spL_t exp;
        upL_t L;
    };
    Extent extent() const { return {this->e, this->L}; }
    static bool window_of(Window& out, const char* location, const Helper& helper, const Number& T, spL_t ie,
                          spL_t te, Extent A, Extent B);
    static BigFloatTransformR held_in_first(const char* location, const Helper& helper, const Number& A);
    static void product(const Helper& helper, Number& T, const Window& window, const BigFloatTransformR& F,
                        const BigFloatTransformR& G);
    static void accept(Number& T, const Window& window, bool positive);
};

}  // namespace lumo
