#include "lumo/radix/cbrv2/power_table.h"

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/multiply/basecase/basecase.h"
#include "lumo/numbers/words/hash61.h"

namespace lumo {

template <typename wtype>
PowerTable<wtype>::PowerTable(const ConvertPlanP<wtype>& plan_, StatusNode& status,
                              const MultiplyContext& ctx, AlignedBufferC& buffer,
                              ConversionProbe<wtype>* probe)
    : plan(plan_) {
    const upL_t count = plan.rows.size();
    if (count == 0) return;
    require(count <= MAX_ROWS, "Too many rows.", "lumo_CBRv2_ci_btrf_build_table()");
    StatusSection section(status, {{'T', "Powering"}, {'T', "... "}});

    const upL_t power_bytes = plan.rows.back().power_words * sizeof(wtype);
    wtype* buffers[2] = {static_cast<wtype*>(buffer.spawn(power_bytes)),
                         static_cast<wtype*>(buffer.spawn(power_bytes))};
    for (upL_t i = 0; i < count; i++) {
        const PowerRow<wtype>& sizes = plan.rows[i];
        if (sizes.direct) {
            rows[i].words = Number(buffer.spawn_words<wtype>(sizes.power_words), sizes.power_words);
            continue;
        }
        Multiply::params(rows[i].build, sizes.ring_words, plan.tds);
        Multiply::params(rows[i].product, sizes.ring_words, sizes.tds);
        if (sizes.image_kept) rows[i].form = Form(*rows[i].build, buffer.spawn(rows[i].build->array_bytes()));
    }
    // The scratch of the steps is shared by all of them.
    const MultiplyContext work = ctx.with_scratch(buffer);

    power = Number(buffers[0], plan.rows.back().power_words);
    set_first_power();
    for (upL_t i = 0;; i++) {
        const PowerRow<wtype>& sizes = plan.rows[i];
        if (probe) probe->power(i, power.T, power.L);
        check_power_hash(status, power.T, power.L, sizes.exponent, plan.radix, sizes.split, ctx.parallel());
        if (sizes.direct) rows[i].words.set_BigFloat(power.L, power);
        if (i + 1 == count) break;
        square(work, i, buffers[(i + 1) % 2]);
    }
}

/// R^B by single words: leaves are short.
template <typename wtype>
void PowerTable<wtype>::set_first_power() {
    const wtype odd = static_cast<wtype>(plan.radix >> plan.twos);
    power.T[0] = 1;
    power.L = 1;
    const auto times = [&](wtype m) {
        const wtype top = bp_mul_uW<wtype>(power.T, power.T, power.L, m, 0);
        if (top == 0) return;
        require_capacity("lumo_CBRv2_ci_btrf_build_table()", power.capacity, power.L + 1);
        power.T[power.L++] = top;
    };
    constexpr wtype most = static_cast<wtype>(~wtype(0));
    wtype packed = 1;
    for (upL_t i = 0; i < plan.base_length; i++) {
        if (packed > most / odd) {
            times(packed);
            packed = 1;
        }
        packed *= odd;
    }
    times(packed);
    times(static_cast<wtype>(wtype(1) << plan.rows[0].shift));
    power.exp = static_cast<spL_t>(plan.rows[0].exponent);
}

/// The power of the next row, and on the way the image of this row's.
template <typename wtype>
void PowerTable<wtype>::square(const MultiplyContext& ctx, upL_t index, wtype* target) {
    const PowerRow<wtype>& row = plan.rows[index];
    const PowerRow<wtype>& next = plan.rows[index + 1];
    const Number root = power;
    power = Number(target, next.power_words);
    if (row.direct) {
        Number product(ctx.buffer().spawn_words<wtype>(2 * root.L), 2 * root.L);
        Basecase::sqrB(product.T, root.T, root.L);
        product.L = bp_strip<wtype>(0, product.T, 2 * root.L);
        product.exp = 2 * root.exp;
        power.set_BigFloat(product.L, product);
    } else {
        const TransformHelper<wtype> helper(ctx, *rows[index].build, 1);
        rows[index].form.forward(helper, root, root.L);
        Form::inverse_fsqr(helper, power, 2 * root.exp, 2 * root.top(), rows[index].form);
    }
    // Two shifts may add up to a word, which then stands as a zero word at the bottom.
    if (2 * row.shift >= WordTraits<wtype>::bits && power.L != 0 && power.T[0] == 0) {
        power.T++;
        power.L--;
        power.exp++;
    }
    if (power.exp != static_cast<spL_t>(next.exponent))
        throw AlgorithmFailedException("lumo_CBRv2_ci_btrf_build_table()", "Mismatching exponents.");
}

template <typename wtype>
void check_power_hash(StatusNode& status, const wtype* P, upL_t L, upL_t exponent, wtype radix, upL_t power,
                      const ParallelContext& ctx) {
    require(radix >= 2, "Radix is less than 2.", "CBRv2::CheckP()");
    StatusSection section(status, {{'T', "Hashing Power...  "}});
    const std::uint64_t expected = Hash61::canonical(Hash61::pow(radix, power));
    const std::uint64_t actual = Hash61::canonical(
        Hash61::mul(bp_hash<wtype>(0, P, L, ctx), Hash61::word_power<wtype>(static_cast<spL_t>(exponent))));
    if (actual == expected) return;
    Console::print_line("Radix Conversion: Power Hash Mismatch", 'R');
    Console::print_label_line("Expected", std::to_string(expected), 'R');
    Console::print_label_line("Actual  ", std::to_string(actual), 'R');
    throw AlgorithmFailedException("CBRv2::CheckP()", "Power Hash Mismatch");
}

template class PowerTable<std::uint32_t>;
template class PowerTable<std::uint64_t>;
template void check_power_hash(StatusNode&, const std::uint32_t*, upL_t, upL_t, std::uint32_t, upL_t,
                               const ParallelContext&);
template void check_power_hash(StatusNode&, const std::uint64_t*, upL_t, upL_t, std::uint64_t, upL_t,
                               const ParallelContext&);

}  // namespace lumo
