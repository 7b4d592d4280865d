#include "velmora/constants/plans/brent_mcmillan.h"

#include <algorithm>

#include "lumo/functions/division_status.h"
#include "velmora/constants/log.h"
#include "velmora/constants/series/series_gamma_k.h"

namespace velmora {
namespace {

using lumo::AlignedBufferC;
using lumo::BigFloat;
using lumo::MultiplyContext;
using lumo::StatusNode;
using lumo::StatusSection;
using lumo::upL_t;

/// The smallest k >= 2 with an error below that of p words: e^(-8n) refined, e^(-4n) original.
template <typename wtype>
unsigned choose_k(BrentMcMillanForm form, upL_t p) {
    const double needed =
        (lumo::words_to_size<wtype>(p).hi + 8) / (form == BrentMcMillanForm::refined ? 8 : 4);
    unsigned k = 2;
    while (static_cast<double>(upL_t(1) << k) < needed) ++k;
    return k;
}

/// Words that the second term needs: p less those by which it is smaller than the result.
template <typename wtype>
upL_t second_precision(upL_t p, unsigned k) {
    const double size = lumo::words_to_size<wtype>(p).hi - 4 * static_cast<double>(upL_t(1) << k);
    return lumo::size_to_words<wtype>(lumo::DoubleDouble(std::max(size, 0.0))) + 2;
}

template <typename wtype>
BigFloat<wtype> as_float(const lumo::ExactFloat<wtype>& number) {
    BigFloat<wtype> view(number.base, number.capacity);
    view.T = number.T;
    view.L = number.L;
    view.exp = number.exp;
    view.positive = number.positive;
    return view;
}

template <typename wtype>
std::unique_ptr<Series_BigFloatR<wtype>> third_sum(BrentMcMillanForm form, unsigned k, upL_t p, upL_t tds) {
    if (form == BrentMcMillanForm::original) return nullptr;
    // K = 1 + P / Q: second_term() adds the one.
    return std::make_unique<Series_BigFloatR<wtype>>(std::make_unique<SeriesGammaK<wtype>>(k),
                                                     lumo::SeriesCoefficients{1, 0, 1, 1}, p, tds);
}

template <typename wtype>
upL_t product_scratch(upL_t p, upL_t tds) {
    return lumo::align_bytes(lumo::Multiply::max_buffer_size<wtype>(2 * p + 12, tds));
}

}  // namespace

template <typename wtype>
BrentMcMillan_BigFloatR<wtype>::BrentMcMillan_BigFloatR(BrentMcMillanForm form_, upL_t p_, upL_t tds)
    : form(form_),
      p(p_ + 2),
      exponent(choose_k<wtype>(form, p)),
      p_second(second_precision<wtype>(p, exponent)),
      series(std::make_unique<lumo::SeriesBrentMcMillanAB<wtype>>(exponent)),
      sums(*series, p, tds),
      division(p, tds),
      division_second(p_second, tds),
      third(third_sum<wtype>(form, exponent, p_second, tds)),
      log2(Log2_Machin_BigFloatR<wtype>(p, tds)) {
    const auto words = [](upL_t count) { return lumo::align_words<wtype>(count) * sizeof(wtype); };
    number_words = lumo::align_words<wtype>(std::max({sums.output_words, division.output_words, p + 8}));
    second_words = lumo::align_words<wtype>(std::max(division_second.output_words, p_second + 8));

    const upL_t kept = 2 * words(number_words) + words(second_words);
    const upL_t parts = 3 * words(number_words);
    const upL_t sum_bytes = parts + words(sums.word_scratch) + sums.byte_scratch;
    const upL_t product_bytes = product_scratch<wtype>(p, tds);
    const upL_t finish_bytes = parts + 2 * words(number_words) +
                               std::max({words(division.word_scratch) + division.byte_scratch, product_bytes,
                                         words(division_second.word_scratch) + division_second.byte_scratch});
    const upL_t second_bytes = third ? std::max({third->total_bytes(), 3 * words(third->output_words()),
                                                 words(third->output_words()) + 2 * words(second_words) +
                                                     product_scratch<wtype>(p_second, tds)})
                                     : 0;
    bytes = kept + lumo::align_bytes(std::max({sum_bytes, finish_bytes, second_bytes, log2.total_bytes()}));
    product_words = std::max({sums.max_product_words, log2.max_product_words(), 2 * p + 12,
                              third ? third->max_product_words() : 0});
}

template <typename wtype>
BigFloat<wtype> BrentMcMillan_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status,
                                                    lumo::ObserverAB<wtype>* observer,
                                                    lumo::SeriesObserver<wtype>* third_observer) const {
    lumo::require_capacity("BrentMcMillan_BigFloatR::run()", ctx.scratch_bytes, bytes);
    AlignedBufferC buffer = ctx.buffer();
    Number quotient(buffer.spawn_words<wtype>(number_words), number_words);
    Number next(buffer.spawn_words<wtype>(number_words), number_words);
    Number ratio(buffer.spawn_words<wtype>(second_words), second_words);
    const MultiplyContext rest = ctx.with_scratch(buffer);

    first_term(rest, status, quotient, ratio, observer);
    if (form == BrentMcMillanForm::refined) {
        second_term(rest, status, next, quotient, ratio, third_observer);
        std::swap(quotient, next);
    }
    Number log_n = [&] {
        const StatusSection section(status, {{'G', "Log(2)...  "}});
        return log2.run(rest, status);
    }();
    log_n.mul_uW(exponent, ctx.parallel());
    next.set_sub(p, ctx.parallel(), quotient, log_n);
    return next;
}

/// quotient := V / (D (D^2 + T)), ratio := D^2 / (D^2 + T) to the precision of the second term.
template <typename wtype>
void BrentMcMillan_BigFloatR<wtype>::first_term(const MultiplyContext& ctx, StatusNode& status,
                                                Number& quotient, Number& ratio,
                                                lumo::ObserverAB<wtype>* observer) const {
    AlignedBufferC buffer = ctx.buffer();
    lumo::PartsAB<wtype> parts;
    for (lumo::ExactFloat<wtype>* part : {&parts.T, &parts.V, &parts.D})
        *part = lumo::ExactFloat<wtype>(buffer.spawn_words<wtype>(number_words), number_words);
    {
        AlignedBufferC scratch = buffer;
        wtype* words = scratch.spawn_words<wtype>(sums.word_scratch);
        sums.run(ctx.with_scratch(scratch), status, parts, words, sums.word_scratch, observer);
    }
    const Number D = as_float(parts.D);
    Number A(buffer.spawn_words<wtype>(number_words), number_words);
    Number B(buffer.spawn_words<wtype>(number_words), number_words);
    const MultiplyContext rest = ctx.with_scratch(buffer);
    const auto divide = [&](const lumo::Division_BigFloatR<wtype>& plan, Number& out, const Number& over,
                            const Number& under) {
        AlignedBufferC scratch = buffer;
        wtype* words = scratch.spawn_words<wtype>(plan.word_scratch);
        const lumo::LargeDivisionStatus section(status);
        plan.run(ctx.with_scratch(scratch), status, out, over, under, words, plan.word_scratch);
    };
    {
        const StatusSection section(status, {{'G', "Finalizing: Q^2: "}});
        A.set_sqr(p, rest, D);
    }
    {
        const StatusSection section(status, {{'G', "Finalizing: R + S: "}});
        B.set_add(p, ctx.parallel(), A, as_float(parts.T));
    }
    if (form == BrentMcMillanForm::refined) divide(division_second, ratio, A, B);
    {
        const StatusSection section(status, {{'G', "Finalizing: Q * (R + S): "}});
        A.set_mul(p, rest, D, B);
    }
    divide(division, quotient, as_float(parts.V), A);
}

/// K / (4 n) = (P + Q) / (4 n Q), at the start of ctx.scratch.
template <typename wtype>
BigFloat<wtype> BrentMcMillan_BigFloatR<wtype>::third_sum_over_4n(
    const MultiplyContext& ctx, StatusNode& status, lumo::SeriesObserver<wtype>* observer) const {
    Number P, Q;
    third->fraction(ctx, status, P, Q, observer);
    {
        const StatusSection section(status, {{'G', "Finishing: P + Q: "}});
        const upL_t words = third->output_words();
        AlignedBufferC buffer = ctx.buffer();
        buffer.spawn_words<wtype>(2 * words);
        Number sum(buffer.spawn_words<wtype>(words), words);
        sum.set_add(p_second + 4, ctx.parallel(), P, Q);
        P.set_BigFloat(p_second + 4, sum, ctx.parallel());
    }
    {
        const StatusSection section(status, {{'G', "Finishing: Q * 2^(k+2): "}});
        Q.mp2(static_cast<lumo::spL_t>(exponent) + 2);
    }
    return third->quotient(ctx, status, P, Q);
}

/// difference := quotient - K ratio^2 / (4 n).
template <typename wtype>
void BrentMcMillan_BigFloatR<wtype>::second_term(const MultiplyContext& ctx, StatusNode& status,
                                                 Number& difference, const Number& quotient,
                                                 const Number& ratio,
                                                 lumo::SeriesObserver<wtype>* observer) const {
    const Number K = third_sum_over_4n(ctx, status, observer);
    AlignedBufferC buffer = ctx.buffer();
    buffer.spawn_words<wtype>(third->output_words());
    Number square(buffer.spawn_words<wtype>(second_words), second_words);
    Number product(buffer.spawn_words<wtype>(second_words), second_words);
    const StatusSection section(status, {{'G', "Large Multiply...  "}});
    square.set_sqr(p_second, ctx.with_scratch(buffer), ratio);
    product.set_mul(p_second, ctx.with_scratch(buffer), square, K);
    difference.set_sub(p, ctx.parallel(), quotient, product);
}

template class BrentMcMillan_BigFloatR<std::uint32_t>;
template class BrentMcMillan_BigFloatR<std::uint64_t>;

}  // namespace velmora
