#include "lumo/radix/verify_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/radix/cbrv2/fraction_view.h"
#include "lumo/radix/cbrv2/power_table.h"

namespace lumo {

namespace {

template <typename wtype>
constexpr unsigned W = WordTraits<wtype>::bits;

template <typename wtype>
wtype odd_part(wtype radix) {
    return static_cast<wtype>(radix >> std::countr_zero(radix));
}

}  // namespace

template <typename wtype>
VerifyPlan<wtype>::VerifyPlan(wtype radix_, upL_t digits_, upL_t fraction_words_, upL_t tds_)
    : radix(radix_), digits(digits_), fraction_words(fraction_words_), tds(tds_) {
    if (radix < 2) throw InvalidParametersException("VerifyPlan::VerifyPlan()", "Invalid radix.");
    const auto twos = static_cast<upL_t>(std::countr_zero(radix));
    const double odd_bits = std::log2(static_cast<double>(odd_part(radix))) * static_cast<double>(digits);
    power_words = static_cast<upL_t>(odd_bits / W<wtype>) + 2;
    const upL_t bits = fraction_words * W<wtype>;
    remainder_words = bits > digits * twos ? (bits - digits * twos + W<wtype> - 1) / W<wtype> : 0;
    // The product's low words go where the square before the last stood.
    const upL_t buffer_words = std::max(power_words, remainder_words) + 2;
    product_words = power_words + std::max(remainder_words, power_words) + 2;
    total_bytes = 2 * align_bytes(buffer_words * sizeof(wtype)) +
                  std::max(Multiply::max_buffer_size<wtype>(power_words + 2, tds),
                           Multiply::max_buffer_size<wtype>(product_words, tds, true));
}

namespace {

/// odd^exponent by squaring, in one of two buffers of `capacity` words.
template <typename wtype>
struct OddPower {
    wtype* words;
    wtype* other;
    upL_t L = 1;

    void set(const MultiplyContext& ctx, wtype odd, upL_t exponent, upL_t capacity) {
        words[0] = 1;
        for (unsigned bit = static_cast<unsigned>(std::bit_width(exponent)); bit-- > 0;) {
            require_capacity("VerifyB::hash_binary()", capacity, 2 * L);
            Multiply::sqr<wtype>(ctx, other, words, L);
            std::swap(words, other);
            L = bp_strip<wtype>(0, words, 2 * L);
            if ((exponent >> bit & 1) == 0) continue;
            const wtype top = bp_mul_uW<wtype>(words, words, L, odd, 0, ctx.parallel());
            if (top == 0) continue;
            require_capacity("VerifyB::hash_binary()", capacity, L + 1);
            words[L++] = top;
        }
    }
};

}  // namespace

template <typename wtype>
std::uint64_t VerifyB<wtype>::hash_binary(const VerifyPlan<wtype>& plan, StatusNode& status,
                                          const BigFloat<wtype>& value, const MultiplyContext& ctx,
                                          ConversionProbe<wtype>* probe) {
    const BigFloat<wtype> X = words_between(value, value.exp, 0);
    if (X.is_zero()) return 0;
    const auto m = static_cast<upL_t>(-X.exp);
    if (m > plan.fraction_words)
        throw InvalidParametersException("VerifyB::hash_binary()", "Too many digits");

    const upL_t buffer_words = std::max(plan.power_words, plan.remainder_words) + 2;
    AlignedBufferC buffer = ctx.buffer();
    OddPower<wtype> power{buffer.spawn_words<wtype>(buffer_words), buffer.spawn_words<wtype>(buffer_words)};
    const MultiplyContext work = ctx.with_scratch(buffer);
    const wtype odd = odd_part(plan.radix);
    {
        StatusSection section(status, {{'T', "Powering"}, {'T', "... "}});
        power.set(work, odd, plan.digits, buffer_words);
    }
    if (probe) probe->power(0, power.words, power.L);
    if (odd != 1) check_power_hash<wtype>(status, power.words, power.L, 0, odd, plan.digits, ctx.parallel());

    // X R^digits = X odd^digits 2^twos = N 2^(W m) + remainder: the twos leave K bits of the odd product
    // below N.
    const upL_t twos = static_cast<upL_t>(std::countr_zero(plan.radix)) * plan.digits;
    const upL_t K = m * W<wtype> > twos ? m * W<wtype> - twos : 0;
    const upL_t words = (K + W<wtype> - 1) / W<wtype>;
    const upL_t low_words = bp_strip<wtype>(0, X.T, std::min(words, X.L));
    std::uint64_t remainder = 0;
    if (low_words != 0) {
        StatusSection section(status, {{'T', "Multiplying...    "}});
        const upL_t L = std::min(words, low_words + power.L);
        Multiply::mul_small<wtype>(work, power.other, 0, L, X.T, low_words, power.words, power.L);
        if (L == words && K % W<wtype> != 0)
            power.other[L - 1] &= static_cast<wtype>((wtype(1) << K % W<wtype>)-1);
        remainder = bp_hash<wtype>(0, power.other, L, ctx.parallel());
    }
    StatusSection section(status, {{'T', "Hashing Binary... "}});
    // N = (X odd^digits - remainder) 2^(twos - W m), with 2^60 for the inverse of 2.
    const std::uint64_t product =
        Hash61::mul(bp_hash<wtype>(0, X.T, X.L, ctx.parallel()), Hash61::pow(odd, plan.digits));
    const std::uint64_t scale =
        Hash61::mul(Hash61::pow(2, twos), Hash61::pow(std::uint64_t(1) << 60, m * W<wtype>));
    return Hash61::canonical(Hash61::mul(Hash61::sub(product, remainder), scale));
}

template struct VerifyPlan<std::uint32_t>;
template struct VerifyPlan<std::uint64_t>;
template struct VerifyB<std::uint32_t>;
template struct VerifyB<std::uint64_t>;

}  // namespace lumo
