#include "lumo/functions/plan_sizes.h"
#include "lumo/functions/power.h"
#include "lumo/functions/power_steps.h"
#include "lumo/numbers/objects/big_float_transform.h"

namespace lumo {

namespace {

constexpr const char* LOCATION = "Power_BF_uL_BigFloatR::run()";
constexpr upL_t TRANSFORM_PRECISION = 12;  // shorter powers use plain products

constexpr upL_t working_precision(upL_t p, upL_t n) {
    return p + (n >> 32 == 0 ? 1 : 2);
}

/// Lengths of the products of the longest power T of pw + 2 words.
constexpr upL_t square_length(upL_t words) {
    return 2 * words + 2;
}
constexpr upL_t multiply_length(upL_t pw, upL_t x_words) {
    return x_words + pw + 6;
}

template <typename wtype>
void plain_power(const MultiplyContext& ctx, StatusNode* status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
                 upL_t n, upL_t pw, wtype* words, upL_t word_count) {
    // Two stores in turn; the last product falls into T.
    BigFloat<wtype> other(words, word_count);
    BigFloat<wtype>* from = &T;
    BigFloat<wtype>* to = &other;
    if ((std::bit_width(n) + std::popcount(n)) % 2 != 0) std::swap(from, to);
    from->set_BigFloat(pw, x);
    walk_exponent(
        status, n,
        [&] {
            to->set_sqr(pw, ctx, *from);
            std::swap(from, to);
        },
        [&] {
            to->set_mul(pw, ctx, *from, x);
            std::swap(from, to);
        });
}

/// In place, through transforms; the image of x is made once.
template <typename wtype>
void transform_power(const MultiplyContext& ctx, StatusNode* status, BigFloat<wtype>& T,
                     const BigFloat<wtype>& x, upL_t n, upL_t pw) {
    using Transform = BigFloatTransformR<wtype>;
    const auto width = static_cast<spL_t>(pw);
    const upL_t x_words = std::min(pw + 2, x.L);
    TransformHolder<wtype> multiply;
    Multiply::params(multiply, multiply_length(pw, x_words), ctx.tds);
    AlignedBufferC rest = ctx.buffer();
    Transform image(*multiply, rest.spawn(multiply->array_bytes()));
    const MultiplyContext inner = ctx.with_scratch(rest);
    const auto hold_x = [&] {
        if (!image.held()) image.forward(TransformHelper<wtype>(inner, *multiply, 1), x, pw);
    };

    T.set_BigFloat(pw, x, ctx.parallel());
    bool first = true;
    walk_exponent(
        status, n,
        [&] {
            TransformHolder<wtype> square;
            Multiply::params(square, square_length(T.L), ctx.tds);
            const TransformHelper<wtype> helper(inner, *square, 1);
            const spL_t top = 2 * T.top();
            if (first && square->same_transform(*multiply)) {
                hold_x();
                Transform::inverse_fsqr(helper, T, top - width, top, image);
            } else {
                Transform::sqr_r_x(helper, T, top - width, top, T);
            }
            T.strip_lzs();
            first = false;
        },
        [&] {
            hold_x();
            const TransformHelper<wtype> helper(inner, *multiply, 1);
            const spL_t top = T.top() + image.top();
            Transform::mul_rf_xf(helper, T, top - width, top, T, image);
            T.strip_lzs();
        });
}

}  // namespace

template <typename wtype>
Power_BF_uL_BigFloatR<wtype>::Power_BF_uL_BigFloatR(upL_t p_, upL_t tds_)
    : FunctionPlan(p_, tds_, sizeof(wtype)) {
    const upL_t pw = p + 2;
    const upL_t plain = std::min(pw, TRANSFORM_PRECISION);
    output_words = p + 4;
    word_scratch = align_words<wtype>(plain + 2);
    byte_scratch = float_product_bytes<wtype>(plain, tds);
    if (pw >= TRANSFORM_PRECISION)
        byte_scratch = std::max(byte_scratch, product_bytes<wtype>(multiply_length(pw, pw + 2), tds));
}

template <typename wtype>
void Power_BF_uL_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode* status, BigFloat<wtype>& T,
                                       const BigFloat<wtype>& x, upL_t n, upL_t precision, wtype* words,
                                       upL_t word_count) const {
    require_power_plan(LOCATION, precision, p, ctx.tds, tds);
    require_capacity(LOCATION, T.capacity, precision + 4);
    const upL_t pw = working_precision(precision, n);
    if (n == 0)
        T.set_word(1);
    else if (n == 1 || x.is_zero())
        T.set_BigFloat(pw, x, ctx.parallel());
    else if (pw < TRANSFORM_PRECISION)
        plain_power(ctx, status, T, x, n, pw, words, word_count);
    else
        transform_power(ctx, status, T, x, n, pw);
}

template struct Power_BF_uL_BigFloatR<std::uint32_t>;
template struct Power_BF_uL_BigFloatR<std::uint64_t>;

}  // namespace lumo
