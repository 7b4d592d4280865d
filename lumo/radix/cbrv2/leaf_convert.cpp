#include "lumo/radix/cbrv2/leaf_convert.h"

#include <algorithm>
#include <cstring>

#include "lumo/foundation/errors/fatal.h"

namespace lumo {

namespace {

template <typename wtype>
struct DoubleWord;
template <>
struct DoubleWord<std::uint32_t> {
    using type = std::uint64_t;
};
template <>
struct DoubleWord<std::uint64_t> {
    using type = unsigned __int128;
};

/// The fraction A[start .. count) times R^steps in place; the words that pass the point go to digits[0 ..
/// steps), first things first. The chains of carries of the steps are independent of each other, so that the
/// processor works on several at once.
template <unsigned steps, typename wtype>
void multiply_out(wtype* digits, wtype* A, upL_t start, upL_t count, wtype R) {
    using wide = typename DoubleWord<wtype>::type;
    wtype carry[steps] = {};
    for (upL_t i = start; i < count; i++) {
        wtype word = A[i];
        for (unsigned j = 0; j < steps; j++) {
            const wide t = static_cast<wide>(word) * R + carry[j];
            word = static_cast<wtype>(t);
            carry[j] = static_cast<wtype>(t >> WordTraits<wtype>::bits);
        }
        A[i] = word;
    }
    for (unsigned j = 0; j < steps; j++) digits[j] = carry[j];
}

}  // namespace

template <typename wtype>
wtype convert_leaf(const ConvertPlanP<wtype>& plan, wtype* out_end, upL_t n, const BigFloat<wtype>& value) {
    const upL_t count = plan.fraction_words(n);
    require(count <= LEAF_CAPACITY, "The leaf is too long.", "convert_leaf()");
    wtype fraction[LEAF_CAPACITY];
    std::fill_n(fraction, count, wtype(0));
    if (!value.is_zero()) {
        const spL_t bottom = -static_cast<spL_t>(count);
        const upL_t skip = value.exp < bottom ? static_cast<upL_t>(bottom - value.exp) : 0;
        const upL_t place = value.exp > bottom ? static_cast<upL_t>(value.exp - bottom) : 0;
        if (skip < value.L) std::memcpy(fraction + place, value.T + skip, (value.L - skip) * sizeof(wtype));
    }

    constexpr unsigned STEPS = 4;
    wtype digits[STEPS];
    upL_t done = 0;
    for (; done + STEPS <= n; done += STEPS) {
        // The fewer words are still to come, the fewer of the fraction they depend on.
        const upL_t start = count - plan.fraction_words(n - done);
        multiply_out<STEPS>(digits, fraction, start, count, plan.radix);
        for (unsigned j = 0; j < STEPS; j++) *--out_end = digits[j];
    }
    const upL_t start = count - plan.fraction_words(n - done);
    for (; done < n; done++) {
        multiply_out<1>(digits, fraction, start, count, plan.radix);
        *--out_end = digits[0];
    }
    multiply_out<1>(digits, fraction, start, count, plan.radix);
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
    parallel_for(ctx.tds > 1 ? *ctx.parallelizer : serial_parallelizer(), 0, n / BLOCK + 1, [&](upL_t block) {
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
