#include "lumo/numbers/objects/exact_float_transform.h"

namespace lumo {

template <typename wtype>
void ExactFloatTransformR<wtype>::hold(const char* location, const Helper& helper, const Number& A) {
    HeldImage<wtype>::hold(location, helper, A);
    hash = A.hash;
}

template <typename wtype>
void ExactFloatTransformR<wtype>::forward(const Helper& helper, const Number& A) {
    hold("ExactFloatTransformR::forward()", helper, A);
}

/// T := F G; array 0 is the working array, and may be F's.
template <typename wtype>
void ExactFloatTransformR<wtype>::product(const char* location, const Helper& helper, Number& T,
                                          const ExactFloatTransformR& F, const ExactFloatTransformR& G,
                                          spL_t emin) {
    if (F.L == 0 || G.L == 0) return T.clear_keeping(Hash61::mul(F.hash, G.hash));
    const upL_t length = F.L + G.L;
    if (length > F.d->words())
        throw ConvolutionTooSmallException(location, "Convolution length is too small.", F.d->words(),
                                           length);
    const spL_t bottom = F.e + G.e;
    const upL_t zeros = bottom > emin ? static_cast<upL_t>(bottom - emin) : 0;
    require_capacity(location, T.capacity, zeros + length);
    T.T = T.base;
    if (F.data == G.data)
        F.d->inverse_fsqr(helper.context(), T.T + zeros, 0, length, helper.array(0), F.data);
    else
        F.d->inverse_fmul(helper.context(), T.T + zeros, 0, length, helper.array(0), F.data, G.data);
    bp_zero(T.T, zeros, helper.context().parallel());
    T.L = zeros + length - (T.T[zeros + length - 1] == 0);
    T.exp = bottom - static_cast<spL_t>(zeros);
    T.positive = F.positive == G.positive;
    T.hash = Hash61::mul(F.hash, G.hash);
}

template <typename wtype>
ExactFloatTransformR<wtype> ExactFloatTransformR<wtype>::held_in(const char* location, const Helper& helper,
                                                                 upL_t array, const Number& A) {
    ExactFloatTransformR image(helper.descriptor(), helper.array(array));
    image.hold(location, helper, A);
    return image;
}

template <typename wtype>
void ExactFloatTransformR<wtype>::sqr_r_x(const Helper& helper, Number& T, const Number& A) {
    constexpr const char* location = "ExactFloatTransformR::sqr_r_x()";
    const auto image = held_in(location, helper, 0, A);
    product(location, helper, T, image, image, NO_EXTENSION);
}

template <typename wtype>
void ExactFloatTransformR<wtype>::mul_rr_xx(const Helper& helper, Number& T, const Number& A, const Number& B,
                                            spL_t emin) {
    const char* const location =
        emin == NO_EXTENSION ? "ExactFloatTransformR::mul_rr_xx()" : "ExactFloatTransformR::mul_rr_xx(exp)";
    const auto image_a = held_in(location, helper, 0, A);
    product(location, helper, T, image_a, held_in(location, helper, 1, B), emin);
}

template <typename wtype>
void ExactFloatTransformR<wtype>::mul_rf_xf(const Helper& helper, Number& T, const Number& A,
                                            const ExactFloatTransformR& F, spL_t emin) {
    const char* const location =
        emin == NO_EXTENSION ? "ExactFloatTransformR::mul_rf_xf()" : "ExactFloatTransformR::mul_rf_xf(exp)";
    F.require_held(location, helper);
    product(location, helper, T, held_in(location, helper, 0, A), F, emin);
}

template <typename wtype>
void ExactFloatTransformR<wtype>::sqr_rx_xf(const Helper& helper, Number& T, const Number& A,
                                            ExactFloatTransformR& F) {
    constexpr const char* location = "ExactFloatTransformR::sqr_rx_xf()";
    F.hold(location, helper, A);
    product(location, helper, T, F, F, NO_EXTENSION);
}

template <typename wtype>
void ExactFloatTransformR<wtype>::mul_rr_xf(const Helper& helper, Number& T, const Number& A, const Number& B,
                                            ExactFloatTransformR& F, spL_t emin) {
    const char* const location =
        emin == NO_EXTENSION ? "ExactFloatTransformR::mul_rr_xf()" : "ExactFloatTransformR::mul_rr_xf(exp)";
    const auto image = held_in(location, helper, 0, A);
    F.hold(location, helper, B);
    product(location, helper, T, image, F, emin);
}

template <typename wtype>
void ExactFloatTransformR<wtype>::inverse_fsqr(const Helper& helper, Number& T,
                                               const ExactFloatTransformR& F) {
    constexpr const char* location = "ExactFloatTransformR::inverse_fsqr()";
    F.require_held(location, helper);
    product(location, helper, T, F, F, NO_EXTENSION);
}

template <typename wtype>
void ExactFloatTransformR<wtype>::inverse_fmul(const Helper& helper, Number& T, const ExactFloatTransformR& F,
                                               const ExactFloatTransformR& G, spL_t emin) {
    const char* const location = emin == NO_EXTENSION ? "ExactFloatTransformR::inverse_fmul()"
                                                      : "ExactFloatTransformR::inverse_fmul(exp)";
    F.require_held(location, helper);
    G.require_held(location, helper);
    product(location, helper, T, F, G, emin);
}

template class ExactFloatTransformR<std::uint32_t>;
template class ExactFloatTransformR<std::uint64_t>;

}  // namespace lumo
