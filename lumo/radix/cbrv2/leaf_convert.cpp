#include "lumo/radix/cbrv2/leaf_convert.h"

#include <algorithm>

#include "lumo/numbers/objects/fraction_float.h"

namespace lumo {

template <typename wtype>
wtype convert_leaf(const ConvertPlanP<wtype>& plan, wtype* out_end, upL_t n, const BigFloat<wtype>& value) {
    const upL_t count = plan.fraction_words(n);
    wtype words[LEAF_CAPACITY];
    FractionFloat<wtype> fraction(words, LEAF_CAPACITY);
    fraction.set_BigFloat(value, count);

    constexpr unsigned STEPS = 4;
    wtype digits[STEPS];
    upL_t done = 0;
    for (; done + STEPS <= n; done += STEPS) {
        // The fewer words are still to come, the fewer of the fraction they depend on.
        const upL_t start = count - plan.fraction_words(n - done);
        fraction.template mul_uW<STEPS>(digits, plan.radix, start);
        for (unsigned j = 0; j < STEPS; j++) *--out_end = digits[j];
    }
    const upL_t start = count - plan.fraction_words(n - done);
    for (; done < n; done++) {
        fraction.template mul_uW<1>(digits, plan.radix, start);
        *--out_end = digits[0];
    }
    fraction.template mul_uW<1>(digits, plan.radix, start);
    return digits[0];
}

template <typename wtype>
wtype convert_bits(unsigned bits, wtype* out_end, upL_t n, const BigFloat<wtype>& value,
                   const ParallelContext& ctx) {
    constexpr unsigned W = WordTraits<wtype>::bits;
    const wtype mask = static_cast<wtype>((wtype(1) << bits) - 1);
    // Word i after the point has its lowest bit at -bits (i + 1).
    const auto word = [&](upL_t i) {
        const upL_t depth = bits * (i + 1);
        const upL_t below = (depth + W - 1) / W;
        const unsigned shift = static_cast<unsigned>(below * W - depth);
        const spL_t position = -static_cast<spL_t>(below);
        wtype w = static_cast<wtype>(value.word_at(position) >> shift);
        if (shift + bits > W) w |= static_cast<wtype>(value.word_at(position + 1) << (W - shift));
        return static_cast<wtype>(w & mask);
    };
    constexpr upL_t BLOCK = 1 << 14;
    parallel_stride(ctx, n / BLOCK + 1, [&](upL_t block) {
        const upL_t end = std::min(n, (block + 1) * BLOCK);
        for (upL_t i = block * BLOCK; i < end; i++) out_end[-1 - static_cast<spL_t>(i)] = word(i);
    });
    return word(n);
}

template std::uint32_t convert_leaf(const ConvertPlanP<std::uint32_t>&, std::uint32_t*, upL_t,
                                    const BigFloat<std::uint32_t>&);
template std::uint64_t convert_leaf(const ConvertPlanP<std::uint64_t>&, std::uint64_t*, upL_t,
                                    const BigFloat<std::uint64_t>&);
template std::uint32_t convert_bits(unsigned, std::uint32_t*, upL_t, const BigFloat<std::uint32_t>&,
                                    const ParallelContext&);
template std::uint64_t convert_bits(unsigned, std::uint64_t*, upL_t, const BigFloat<std::uint64_t>&,
                                    const ParallelContext&);

}  // namespace lumo
