/// Held forward transforms of exact floats: whole products with hashes.
/// The `_exp` forms place the product's bottom at exponent `emin`, zero-filled below, when it lies above it.
#pragma once

#include "lumo/numbers/objects/exact_float.h"
#include "lumo/numbers/objects/transform_helper.h"

namespace lumo {

template <typename wtype>
class ExactFloatTransformR {
 public:
    using Number = ExactFloat<wtype>;
    using Helper = TransformHelper<wtype>;

    ExactFloatTransformR() = default;
    ExactFloatTransformR(const TransformDescriptor<wtype>& descriptor, void* image)
        : d(&descriptor), data(image) {}

    /// Image of the whole number. TransformTooSmallException "Transform length is too small." beyond the
    /// descriptor's words().
    void forward(const Helper& helper, const Number& A);

    // Slot letters as for BigFloatTransformR; array 0 takes a plain operand, array 1 a second one.
    static void sqr_r_x(const Helper& helper, Number& T, const Number& A);
    static void mul_rr_xx(const Helper& helper, Number& T, const Number& A, const Number& B);
    static void mul_rr_xx_exp(const Helper& helper, Number& T, const Number& A, const Number& B, spL_t emin);
    /// A fresh in array 0, F held and kept. T may share A's storage.
    static void mul_rf_xf(const Helper& helper, Number& T, const Number& A, const ExactFloatTransformR& F);
    static void mul_rf_xf_exp(const Helper& helper, Number& T, const Number& A, const ExactFloatTransformR& F,
                              spL_t emin);
    /// The image of the last operand stays in F (whose array must not be array 0).
    static void sqr_rx_xf(const Helper& helper, Number& T, const Number& A, ExactFloatTransformR& F);
    static void mul_rr_xf(const Helper& helper, Number& T, const Number& A, const Number& B,
                          ExactFloatTransformR& F);
    static void mul_rr_xf_exp(const Helper& helper, Number& T, const Number& A, const Number& B,
                              ExactFloatTransformR& F, spL_t emin);
    /// From held forms; array 0 is the working array.
    static void inverse_fsqr(const Helper& helper, Number& T, const ExactFloatTransformR& F);
    static void inverse_fmul(const Helper& helper, Number& T, const ExactFloatTransformR& F,
                             const ExactFloatTransformR& G);
    static void inverse_fmul_exp(const Helper& helper, Number& T, const ExactFloatTransformR& F,
                                 const ExactFloatTransformR& G, spL_t emin);

 private:
    void hold(const char* location, const Helper& helper, const Number& A);
    void require_ring(const char* location, const Helper& helper, const char* text) const;
    void require_held(const char* location, const Helper& helper) const;
    static ExactFloatTransformR held_in(const char* location, const Helper& helper, upL_t array,
                                        const Number& A);
    static void product(const char* location, const Helper& helper, Number& T, const ExactFloatTransformR& F,
                        const ExactFloatTransformR& G, spL_t emin);

    const TransformDescriptor<wtype>* d = nullptr;
    void* data = nullptr;
    spL_t e = 0;
    upL_t L = 0;
    bool positive = true;
    std::uint64_t hash = 0;
    bool ready = false;
};

}  // namespace lumo
