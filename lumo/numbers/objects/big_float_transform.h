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
#include "lumo/numbers/objects/transform_helper.h"

namespace lumo {

template <typename wtype>
class BigFloatTransformR {
 public:
    using Number = BigFloat<wtype>;
    using Helper = TransformHelper<wtype>;

    BigFloatTransformR() = default;
    /// `image`: array_bytes() of the descriptor, aligned, alive as long as the form is used.
    BigFloatTransformR(const TransformDescriptor<wtype>& descriptor, void* image)
        : d(&descriptor), data(image) {}

    bool held() const { return ready; }
    void* image() const { return data; }
    spL_t exp() const { return e; }
    upL_t length() const { return L; }
    spL_t top() const { return e + static_cast<spL_t>(L); }

    /// Image of the top p + 2 words of A. TransformTooSmallException "Transform length is too small." beyond
    /// the descriptor's words().
    void forward(const Helper& helper, const Number& A, upL_t p);

    // Slot letters: r plain, f held, x nothing kept. `work` arrays are taken from the helper by index: a
    // plain operand that is not kept uses array 0 (and 1 for the second), which the caller must not hold
    // images in.
    static void sqr_r_x(const Helper& helper, Number& T, spL_t ie, spL_t te, const Number& A);
    static void mul_rr_xx(const Helper& helper, Number& T, spL_t ie, spL_t te, const Number& A,
                          const Number& B);
    /// As mul_rr_xx(), with array 0 alone: B's image is made in parts in what the work area has beyond the
    /// descriptor's scratch_bytes(), at least least_part_bytes().
    static void mul_rr_xx_small(const Helper& helper, Number& T, spL_t ie, spL_t te, const Number& A,
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
    void hold(const char* location, const Helper& helper, const Number& A);
    void require_same_ring(const char* location, const TransformDescriptor<wtype>& other,
                           const char* text) const;
    void require_held(const char* location, const Helper& helper) const;
    static bool window_of(Window& out, const char* location, const Helper& helper, const Number& T, spL_t ie,
                          spL_t te, spL_t e, upL_t L);
    static void accept(Number& T, const Window& window, bool positive);

    const TransformDescriptor<wtype>* d = nullptr;
    void* data = nullptr;
    spL_t e = 0;
    upL_t L = 0;
    bool positive = true;
    bool ready = false;
};

}  // namespace lumo
