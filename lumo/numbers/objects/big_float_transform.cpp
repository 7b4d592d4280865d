#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

namespace {

constexpr spL_t GUARD_WORDS = 2;
constexpr const char* INVALID = "Invalid Transform Parameters";
constexpr const char* MISMATCHING = "Mismatching Transform Parameters";

/// A without the words below `position`, by pointer.
template <typename wtype>
BigFloat<wtype> cut_below(const BigFloat<wtype>& A, spL_t position) {
    return A.exp >= position ? A : A.cut(A.top() > position ? static_cast<upL_t>(A.top() - position) : 0);
}

/// Both operands without the words that a window from `low` up does not see.
template <typename wtype>
struct CutPair {
    BigFloat<wtype> A, B;
    CutPair(const BigFloat<wtype>& A_, const BigFloat<wtype>& B_, spL_t low)
        : A(cut_below(A_, low - B_.top())), B(cut_below(B_, low - A_.top())) {}
    bool is_zero() const { return A.L == 0 || B.L == 0; }
    bool is_positive() const { return A.positive == B.positive; }
};

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
                                          const Number& T, spL_t ie, spL_t te, spL_t e, upL_t L) {
    if (params(out, ie - GUARD_WORDS, te, e, L, helper.descriptor().words())) return true;
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
void BigFloatTransformR<wtype>::hold(const char* location, const Helper& helper, const Number& A) {
    require_same_ring(location, helper.descriptor(), INVALID);
    if (A.L > d->words()) throw TransformTooSmallException(location, "Transform length is too small.");
    e = A.exp;
    L = A.L;
    positive = A.positive;
    if (L != 0) d->forward(helper.context(), A.T, A.L, data);
    ready = true;
}

template <typename wtype>
void BigFloatTransformR<wtype>::require_same_ring(const char* location,
                                                  const TransformDescriptor<wtype>& other,
                                                  const char* text) const {
    if (d == nullptr || !d->same_transform(other)) throw InvalidParametersException(location, text);
}

template <typename wtype>
void BigFloatTransformR<wtype>::require_held(const char* location, const Helper& helper) const {
    require_same_ring(location, helper.descriptor(), MISMATCHING);
    if (!ready) throw InvalidParametersException(location, INVALID);
}

template <typename wtype>
void BigFloatTransformR<wtype>::forward(const Helper& helper, const Number& A, upL_t p) {
    hold("BigFloatTransformR::forward()", helper, A.cut(p + 2));
}

template <typename wtype>
void BigFloatTransformR<wtype>::sqr_r_x(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                        const Number& A) {
    constexpr const char* location = "BigFloatTransformR::sqr_r_x()";
    BigFloatTransformR image(helper.descriptor(), helper.array(0));
    const Number a = cut_below(A, ie - GUARD_WORDS - A.top());
    Window window;
    if (a.L == 0 || window_of(window, location, helper, T, ie, te, 2 * a.exp, 2 * a.L)) return T.clear();
    image.hold(location, helper, a);
    image.d->inverse_fsqr(helper.context(), T.base, window.skip, window.skip + window.length, image.data,
                          image.data);
    accept(T, window, true);
}

template <typename wtype>
void BigFloatTransformR<wtype>::mul_rr_xx(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                          const Number& A, const Number& B) {
    constexpr const char* location = "BigFloatTransformR::mul_rr_xx()";
    const CutPair<wtype> cut(A, B, ie - GUARD_WORDS);
    Window window;
    if (cut.is_zero() ||
        window_of(window, location, helper, T, ie, te, cut.A.exp + cut.B.exp, cut.A.L + cut.B.L))
        return T.clear();
    BigFloatTransformR image_a(helper.descriptor(), helper.array(0));
    BigFloatTransformR image_b(helper.descriptor(), helper.array(1));
    image_a.hold(location, helper, cut.A);
    image_b.hold(location, helper, cut.B);
    image_a.d->inverse_fmul(helper.context(), T.base, window.skip, window.skip + window.length, image_a.data,
                            image_a.data, image_b.data);
    accept(T, window, cut.is_positive());
}

template <typename wtype>
void BigFloatTransformR<wtype>::mul_rr_xx_small(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                                const Number& A, const Number& B) {
    constexpr const char* location = "BigFloatTransformR::mul_rr_xx_small()";
    const CutPair<wtype> cut(A, B, ie - GUARD_WORDS);
    Window window;
    if (cut.is_zero() ||
        window_of(window, location, helper, T, ie, te, cut.A.exp + cut.B.exp, cut.A.L + cut.B.L))
        return T.clear();
    const TransformDescriptor<wtype>& d = helper.descriptor();
    AlignedBufferC part = helper.context().buffer();
    void* const work = part.spawn(d.scratch_bytes());
    d.mul_in_parts(helper.context().with_scratch({work, d.scratch_bytes()}), T.base, window.skip,
                   window.skip + window.length, cut.A.T, cut.A.L, cut.B.T, cut.B.L, helper.array(0), part);
    accept(T, window, cut.is_positive());
}

template <typename wtype>
void BigFloatTransformR<wtype>::mul_rf_xf(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                          const Number& A, const BigFloatTransformR& F) {
    constexpr const char* location = "BigFloatTransformR::mul_rf_xf()";
    F.require_held(location, helper);
    const Number a = cut_below(A, ie - GUARD_WORDS - F.top());
    Window window;
    if (a.L == 0 || F.L == 0 || window_of(window, location, helper, T, ie, te, a.exp + F.e, a.L + F.L))
        return T.clear();
    BigFloatTransformR image(helper.descriptor(), helper.array(0));
    image.hold(location, helper, a);
    F.d->inverse_fmul(helper.context(), T.base, window.skip, window.skip + window.length, image.data,
                      image.data, F.data);
    accept(T, window, a.positive == F.positive);
}

template <typename wtype>
void BigFloatTransformR<wtype>::sqr_rx_xf(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                          const Number& A, BigFloatTransformR& F) {
    constexpr const char* location = "BigFloatTransformR::sqr_rx_xf()";
    const Number a = cut_below(A, ie - GUARD_WORDS - A.top());
    Window window;
    if (a.L == 0 || window_of(window, location, helper, T, ie, te, 2 * a.exp, 2 * a.L)) {
        // The square is not needed, its image may be: as much of A as the ring takes.
        F.hold(location, helper, A.cut(helper.descriptor().words()));
        return T.clear();
    }
    F.hold(location, helper, a);
    F.d->inverse_fsqr(helper.context(), T.base, window.skip, window.skip + window.length, helper.array(0),
                      F.data);
    accept(T, window, true);
}

template <typename wtype>
void BigFloatTransformR<wtype>::mul_rr_xf(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                          const Number& A, const Number& B, BigFloatTransformR& F) {
    constexpr const char* location = "BigFloatTransformR::mul_rr_xf()";
    const CutPair<wtype> cut(A, B, ie - GUARD_WORDS);
    Window window;
    if (cut.is_zero() ||
        window_of(window, location, helper, T, ie, te, cut.A.exp + cut.B.exp, cut.A.L + cut.B.L)) {
        F.hold(location, helper, B.cut(helper.descriptor().words()));
        return T.clear();
    }
    BigFloatTransformR image(helper.descriptor(), helper.array(0));
    image.hold(location, helper, cut.A);
    F.hold(location, helper, cut.B);
    F.d->inverse_fmul(helper.context(), T.base, window.skip, window.skip + window.length, image.data,
                      image.data, F.data);
    accept(T, window, cut.is_positive());
}

template <typename wtype>
void BigFloatTransformR<wtype>::inverse_fsqr(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                             const BigFloatTransformR& F) {
    constexpr const char* location = "BigFloatTransformR::inverse_fsqr()";
    F.require_held(location, helper);
    Window window;
    if (F.L == 0 || window_of(window, location, helper, T, ie, te, 2 * F.e, 2 * F.L)) return T.clear();
    F.d->inverse_fsqr(helper.context(), T.base, window.skip, window.skip + window.length, helper.array(0),
                      F.data);
    accept(T, window, true);
}

template <typename wtype>
void BigFloatTransformR<wtype>::inverse_fmul(const Helper& helper, Number& T, spL_t ie, spL_t te,
                                             const BigFloatTransformR& F, const BigFloatTransformR& G) {
    constexpr const char* location = "BigFloatTransformR::inverse_fmul()";
    F.require_held(location, helper);
    G.require_held(location, helper);
    Window window;
    if (F.L == 0 || G.L == 0 || window_of(window, location, helper, T, ie, te, F.e + G.e, F.L + G.L))
        return T.clear();
    F.d->inverse_fmul(helper.context(), T.base, window.skip, window.skip + window.length, helper.array(0),
                      F.data, G.data);
    accept(T, window, F.positive == G.positive);
}

template class BigFloatTransformR<std::uint32_t>;
template class BigFloatTransformR<std::uint64_t>;

}  // namespace lumo
