#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

namespace {

constexpr spL_t GUARD_WORDS = 2;

/// A without the words below `position`, by pointer.
template <typename wtype>
BigFloat<wtype> cut_below(const BigFloat<wtype>& A, spL_t position) {
    return A.exp >= position ? A : A.cut(A.top() > position ? static_cast<upL_t>(A.top() - position) : 0);
}

/// Both operands without the words that a window from `low` up does not see.
template <typename wtype>
std::pair<BigFloat<wtype>, BigFloat<wtype>> cut_pair(const BigFloat<wtype>& A, const BigFloat<wtype>& B,
                                                     spL_t low) {
    return {cut_below(A, low - B.top()), cut_below(B, low - A.top())};
}

}  // namespace

template <typename wtype>
bool BigFloatTransformR<wtype>::params(Window& out, spL_t ie, spL_t te, spL_t e, upL_t L, upL_t C) {
    const spL_t product_top = e + static_cast<spL_t>(L);
    if (te <= e || ie >= product_top || ie >= te) return true;
    out.overflow = L < C ? 0 : L - C;
    spL_t bottom = e + static_cast<spL_t>(out.overflow);
    spL_t top = product_top - static_cast<spL_t>(out.overflow);
    if (out.overflow != 0 && (top < te || bottom > ie))
        throw ConvolutionTooSmallException("BigFloatTransformR::params()",
                                           "ie = " + std::to_string(ie) + ", te = " + std::to_string(te), C,
                                           L);
    out.skip = out.overflow;
    if (te < top) top = te;
    if (ie > bottom) {
        out.skip += static_cast<upL_t>(ie - bottom);
        bottom = ie;
    }
    out.exp = bottom;
    out.length = static_cast<upL_t>(top - bottom);
    return false;
}

/// Runs params() and checks the room in T. True: the product is zero in the window.
template <typename wtype>
bool BigFloatTransformR<wtype>::window_of(Window& out, const char* location, const Helper& helper,
                                          const Number& T, spL_t ie, spL_t te, Extent A, Extent B) {
    if (A.L == 0 || B.L == 0) return true;
    const upL_t C = helper.descriptor().words();
    if (params(out, ie - GUARD_WORDS, te, A.exp + B.exp, A.L + B.L, C)) return true;
    require_capacity(location, T.capacity, out.length);
    return false;
}

template <typename wtype>
void BigFloatTransformR<wtype>::accept(Number& T, const Window& window, bool positive) {
    T.T = T.base;
    T.exp = window.exp;
    T.positive = positive;
    T.L = bp_strip<wtype>(0, T.T, window.length);
    if (T.L == 0) T.clear();
}

template <typename wtype>
void BigFloatTransformR<wtype>::forward(const Helper& helper, const Number& A, upL_t p) {
    this->hold("BigFloatTransformR::forward()", helper, A.cut(p + 2));
}

template <typename wtype>
BigFloatTransformR<wtype> BigFloatTransformR<wtype>::held_in_first(const char* location, const Helper& helper,
                                                                   const Number& A) {
    BigFloatTransformR image(helper.descriptor(), helper.array(0));
    image.hold(location, helper, A);
    return image;
}

/// T := F G; array 0 is the working array, and may be F's.
template <typename wtype>
void BigFloatTransformR<wtype>::product(const Helper& helper, Number& T, const Window& window,
                                        const BigFloatTransformR& F, const BigFloatTransformR& G) {
    const upL_t end = window.skip + window.length;
    if (F.data == G.data)
        F.d->inverse_fsqr(helper.context(), T.base, window.skip, end, helper.array(0), F.data);
    else
        F.d->inverse_fmul(helper.context(), T.base, window.skip, end, helper.array(0), F.data, G.data);
    accept(T, window, F.positive == G.positive);
}

template <typename wtype>
void BigFloatTransformR<wtype>::sqr_r_x(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                        const Number& A) {
    constexpr const char* location = "BigFloatTransformR::sqr_r_x()";
    const Number a = cut_below(A, ie - GUARD_WORDS - A.top());
    Window window;
    if (window_of(window, location, helper, T, ie, te, {a.exp, a.L}, {a.exp, a.L})) return T.clear();
    const auto image = held_in_first(location, helper, a);
    product(helper, T, window, image, image);
}

template <typename wtype>
void BigFloatTransformR<wtype>::mul_rr_xx(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                          const Number& A, const Number& B) {
    constexpr const char* location = "BigFloatTransformR::mul_rr_xx()";
    const auto [a, b] = cut_pair(A, B, ie - GUARD_WORDS);
    Window window;
    if (window_of(window, location, helper, T, ie, te, {a.exp, a.L}, {b.exp, b.L})) return T.clear();
    const TransformDescriptor<wtype>& d = helper.descriptor();
    AlignedBufferC part = helper.context().buffer();
    const AlignedBufferC work = part.spawn_buffer(d.scratch_bytes());
    d.mul_in_parts(helper.context().with_scratch(work), T.base, window.skip, window.skip + window.length, a.T,
                   a.L, b.T, b.L, helper.array(0), part);
    accept(T, window, a.positive == b.positive);
}

template <typename wtype>
void BigFloatTransformR<wtype>::mul_rf_xf(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                          const Number& A, const BigFloatTransformR& F) {
    constexpr const char* location = "BigFloatTransformR::mul_rf_xf()";
    F.require_held(location, helper);
    const Number a = cut_below(A, ie - GUARD_WORDS - F.top());
    Window window;
    if (window_of(window, location, helper, T, ie, te, {a.exp, a.L}, F.extent())) return T.clear();
    product(helper, T, window, held_in_first(location, helper, a), F);
}

template <typename wtype>
void BigFloatTransformR<wtype>::sqr_rx_xf(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                          const Number& A, BigFloatTransformR& F) {
    constexpr const char* location = "BigFloatTransformR::sqr_rx_xf()";
    const Number a = cut_below(A, ie - GUARD_WORDS - A.top());
    Window window;
    if (window_of(window, location, helper, T, ie, te, {a.exp, a.L}, {a.exp, a.L})) {
        // The square is not needed, its image may be: as much of A as the ring takes.
        F.hold(location, helper, A.cut(helper.descriptor().words()));
        return T.clear();
    }
    F.hold(location, helper, a);
    product(helper, T, window, F, F);
}

template <typename wtype>
void BigFloatTransformR<wtype>::mul_rr_xf(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                          const Number& A, const Number& B, BigFloatTransformR& F) {
    constexpr const char* location = "BigFloatTransformR::mul_rr_xf()";
    const auto [a, b] = cut_pair(A, B, ie - GUARD_WORDS);
    Window window;
    if (window_of(window, location, helper, T, ie, te, {a.exp, a.L}, {b.exp, b.L})) {
        F.hold(location, helper, B.cut(helper.descriptor().words()));
        return T.clear();
    }
    const auto image = held_in_first(location, helper, a);
    F.hold(location, helper, b);
    product(helper, T, window, image, F);
}

template <typename wtype>
void BigFloatTransformR<wtype>::inverse_fsqr(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                             const BigFloatTransformR& F) {
    constexpr const char* location = "BigFloatTransformR::inverse_fsqr()";
    F.require_held(location, helper);
    Window window;
    if (window_of(window, location, helper, T, ie, te, F.extent(), F.extent())) return T.clear();
    product(helper, T, window, F, F);
}

template <typename wtype>
void BigFloatTransformR<wtype>::inverse_fmul(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                             const BigFloatTransformR& F, const BigFloatTransformR& G) {
    constexpr const char* location = "BigFloatTransformR::inverse_fmul()";
    F.require_held(location, helper);
    G.require_held(location, helper);
    Window window;
    if (window_of(window, location, helper, T, ie, te, F.extent(), G.extent())) return T.clear();
    product(helper, T, window, F, G);
}

template class BigFloatTransformR<std::uint32_t>;
template class BigFloatTransformR<std::uint64_t>;

}  // namespace lumo
