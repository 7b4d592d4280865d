#include "lumo/radix/to_string_dec.h"

#include <cmath>

#include "lumo/foundation/memory/aligned_malloc.h"
#include "lumo/functions/plan_sizes.h"
#include "lumo/functions/power.h"
#include "lumo/radix/direct_convert.h"
#include "lumo/radix/float_string.h"

namespace lumo {

namespace {

constexpr upL_t GUARD_DIGITS = 20;
constexpr upL_t DIGITS_A_WORD = 9;

/// The exponent of the first digit, off by one now and then.
template <typename wtype>
spL_t first_digit_exponent(const BigFloat<wtype>& x) {
    spL_t e;
    const long double m = std::fabs(x.get_double(e));
    const long double bits = static_cast<long double>(e) * WordTraits<wtype>::bits;
    return static_cast<spL_t>(std::floor(std::log10(m) + bits * 0.301029995663981195213738894724493L));
}

/// Scales numbers by powers of ten and converts fractions, in memory of its own.
template <typename wtype>
class DecimalScale {
 public:
    explicit DecimalScale(upL_t digits)
        : p(static_cast<upL_t>(static_cast<double>(digits) * 3.33 / WordTraits<wtype>::bits) + 2),
          power(p, 1),
          convert(1000000000, digits / DIGITS_A_WORD + 1, 1),
          scratch_bytes(
              std::max({power.byte_scratch, float_product_bytes<wtype>(p, 1), convert.total_bytes})),
          words(make_aligned<wtype>(power.output_words + power.word_scratch + p + 2)),
          scratch(make_aligned<unsigned char>(scratch_bytes)) {
        Multiply::ensure_tables(std::max(2 * p + 6, convert.product_words) * WordTraits<wtype>::bits);
    }
    /// |x| 10^k, valid until the next call.
    BigFloat<wtype> scaled(const BigFloat<wtype>& x, spL_t k) {
        BigFloat<wtype> factor(words.get(), power.output_words);
        BigFloat<wtype> y(words.get() + power.output_words, p + 2);
        power.run(context(), status, factor, 10, k, p, y.base + y.capacity, power.word_scratch);
        y.set_mul(p, context(), x, factor);
        y.positive = true;
        return y;
    }
    /// The digits after the point of a fraction.
    std::string digits_of(const BigFloat<wtype>& fraction) {
        std::vector<wtype> out(convert.length);
        DirectConvertB<wtype>::run(convert, status, out.data(), out.size(), fraction, context());
        std::string text;
        for (upL_t i = out.size(); i-- > 0;) {
            const std::string word = std::to_string(out[i]);
            text += std::string(DIGITS_A_WORD - word.size(), '0') + word;
        }
        return text;
    }

 private:
    MultiplyContext context() const { return MultiplyContext{}.with_scratch({scratch.get(), scratch_bytes}); }
    upL_t p;
    Power_uW_sL_BigFloatR<wtype> power;
    ConvertPlanP<wtype> convert;
    upL_t scratch_bytes;
    AlignedPtr<wtype> words;
    AlignedPtr<unsigned char> scratch;
    NullStatusNode status;
};

}  // namespace

template <typename wtype>
std::string to_string_dec(const BigFloat<wtype>& x, upL_t digits) {
    if (x.is_zero()) return "0";
    DecimalScale<wtype> scale(digits + GUARD_DIGITS);
    spL_t exponent = first_digit_exponent(x);
    BigFloat<wtype> fraction = scale.scaled(x, -exponent - 1);
    while (fraction.top() > 0) fraction = scale.scaled(x, -++exponent - 1);
    std::string text = scale.digits_of(fraction);
    const upL_t zeros = text.find_first_not_of('0');
    text.erase(0, zeros);
    exponent -= static_cast<spL_t>(zeros);
    FloatString number(10, text);
    exponent += number.round(digits);
    const bool plain = exponent >= 0 && static_cast<upL_t>(exponent) < digits;
    number.apply_dot(plain ? static_cast<upL_t>(exponent) + 1 : 1);
    number.strip_lzs();
    number.apply_sign(x.positive);
    plain ? number.set_integer() : number.set_scientific(exponent);
    return number.text();
}

template std::string to_string_dec(const BigFloat<std::uint32_t>&, upL_t);
template std::string to_string_dec(const BigFloat<std::uint64_t>&, upL_t);

}  // namespace lumo
