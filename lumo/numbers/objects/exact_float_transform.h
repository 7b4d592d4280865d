/// Held forward transforms of exact floats: whole products with hashes.
/// With `emin` they place the product's bottom at that exponent, zero-filled below, when it lies above it.
#pragma once

#include "lumo/numbers/objects/exact_float.h"
#include "lumo/numbers/objects/held_image.h"

namespace lumo {

template <typename wtype>
class ExactFloatTransformR : public HeldImage<wtype> {
 public:
    using Number = ExactFloat<wtype>;
    using Helper = TransformHelper<wtype>;
    /// An exponent that no product lies above: nothing is filled in below it.
    static constexpr spL_t NO_EXTENSION = INT64_MAX;

    using HeldImage<wtype>::HeldImage;

    /// Image of the whole number. TransformTooSmallException "Transform length is too small." beyond the
    /// descriptor's words().
    void forward(const Helper& helper, const Number& A);

    // Slot letters as for BigFloatTransformR; array 0 takes a plain operand, array 1 a second one.
    static void sqr_r_x(const Helper& helper, Number& T, const Number& A);
    static void mul_rr_xx(const Helper& helper, Number& T, const Number& A, const Number& B,
                          spL_t emin = NO_EXTENSION);
    /// A fresh in array 0, F held and kept. T may share A's storage.
    static void mul_rf_xf(const Helper& helper, Number& T, const Number& A, const ExactFloatTransformR& F,
                          spL_t emin = NO_EXTENSION);
    /// The image of the last operand stays in F (whose array must not be array 0).
    static void sqr_rx_xf(const Helper& helper, Number& T, const Number& A, ExactFloatTransformR& F);
    static void mul_rr_xf(const Helper& helper, Number& T, const Number& A, const Number& B,
                          ExactFloatTransformR& F, spL_t emin = NO_EXTENSION);
    /// From held forms; array 0 is the working array.
    static void inverse_fsqr(const Helper& helper, Number& T, const ExactFloatTransformR& F);
    static void inverse_fmul(const Helper& helper, Number& T, const ExactFloatTransformR& F,
                             const ExactFloatTransformR& G, spL_t emin = NO_EXTENSION);

 private:
    void hold(const char* location, const Helper& helper, const Number& A);
    static ExactFloatTransformR held_in(const char* location, const Helper& helper, upL_t array,
                                        const Number& A);
    static void product(const char* location, const Helper& helper, Number& T, const ExactFloatTransformR& F,
                        const ExactFloatTransformR& G, spL_t emin);

    std::uint64_t hash = 0;
};

}  // namespace lumo
