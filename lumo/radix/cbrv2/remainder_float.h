/// The fraction of a product by a held power.
#pragma once

#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

template <typename wtype>
struct RemainderFloatB {
    using Number = BigFloat<wtype>;
    using Power = BigFloatTransformR<wtype>;

    /// T := fraction of A x F, at least `words` words of it after the point, two more where there are any;
    /// the lowest is off by a few units. A is positive and without integer part in its words that F brings
    /// below the point. The transform of the helper holds A, and F together with the words wanted and three
    /// more. AlgorithmFailedException "Truncated Range" when the words wanted did not come out whole,
    /// "Unexpected: tmag < 0" when they came out negative.
    static void set_inverse_fmul(const TransformHelper<wtype>& helper, Number& T, const Number& A,
                                 const Power& F, upL_t words);
    /// The same for a power F in words, whose image is made in parts: one array, and in the work area what
    /// mul_rr_xx() wants.
    static void set_mul_small(const TransformHelper<wtype>& helper, Number& T, const Number& A,
                              const Number& F, upL_t words);

    /// The same for a power so short that the whole product is made from words, and T is all of the fraction.
    /// T has the capacity of the product.
    static void set_direct(Number& T, const Number& A, const Number& F);

 private:
    static void check(const char* location, const Number& T, spL_t lowest, spL_t product_bottom);
};

}  // namespace lumo
