#include "velmora/constants/log.h"

#include "lumo/foundation/errors/exceptions.h"
#include "velmora/constants/planned_constant.h"
#include "velmora/constants/series/series_arccoth.h"

namespace velmora {

namespace {

std::string term_text(const machin::Term& term) {
    return std::to_string(term.c) + " ArcCoth( " + std::to_string(term.x) + " )";
}

}  // namespace

template <typename wtype>
SeriesSum_BigFloatR<wtype> Log_Machin_BigFloatR(const machin::Formula& formula, upL_t p, upL_t tds) {
    SeriesSum_BigFloatR<wtype> sum(p, tds);
    for (const machin::Term& term : formula.terms)
        sum.add(term.c, term_text(term), Series_ArcCoth_Base<wtype>(term.x), arccoth_coefficients(term.x));
    return sum;
}

template SeriesSum_BigFloatR<std::uint32_t> Log_Machin_BigFloatR(const machin::Formula&, upL_t, upL_t);
template SeriesSum_BigFloatR<std::uint64_t> Log_Machin_BigFloatR(const machin::Formula&, upL_t, upL_t);

template <typename wtype>
SeriesSum_BigFloatR<wtype> Log2_Machin_BigFloatR(upL_t p, upL_t tds) {
    static const machin::Formula two = machin::search_primary(2, machin::RANKING_SIZE).formula;
    return Log_Machin_BigFloatR<wtype>(two, p, tds);
}

template SeriesSum_BigFloatR<std::uint32_t> Log2_Machin_BigFloatR(upL_t, upL_t);
template SeriesSum_BigFloatR<std::uint64_t> Log2_Machin_BigFloatR(upL_t, upL_t);

LogConstant::LogConstant(const CatalogueEntry& entry) : IntegerConstant(entry) {
    find_formulas();
}

std::unique_ptr<Constant> LogConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<LogConstant>(entry);
}

std::string LogConstant::refusal(upL_t n) const {
    return n == 0 ? "Argument is invalid: " : "";
}

void LogConstant::set_argument(std::string_view text) {
    const std::string before = std::to_string(argument());
    IntegerConstant::set_argument(text);
    find_formulas();
    // Log(1) is the empty sum.
    if (argument() == 1 || (!primary.terms.empty() && !secondary.terms.empty())) return;
    LogConstant::set_argument(before);
    throw lumo::InvalidParametersException("",
                                           "No formula was found for this logarithm: " + std::string(text));
}

void LogConstant::find_formulas() {
    primary = machin::search_primary(argument(), machin::RANKING_SIZE).formula;
    secondary = machin::search_secondary(primary, machin::RANKING_SIZE).formula;
}

const machin::Formula& LogConstant::formula(const AlgorithmEntry& entry) const {
    return entry.token == std::string_view("machin-secondary") ? secondary : primary;
}

std::string LogConstant::algorithm_name(const AlgorithmEntry& entry) const {
    return entry.name + std::to_string(formula(entry).terms.size()) + " terms)";
}

std::string LogConstant::algorithm_remark(const AlgorithmEntry& entry) const {
    std::string text;
    for (const machin::Term& term : formula(entry).terms) text += "\n" + term_text(term);
    return text;
}

SeriesSum_BigFloatR<std::uint64_t> LogConstant::plan(upL_t precision_words, upL_t tds) const {
    return Log_Machin_BigFloatR<std::uint64_t>(formula(algorithm()), precision_words, tds);
}

upL_t LogConstant::terms(upL_t precision_words) const {
    return plan(precision_words, 1).terms();
}

SizeEstimate LogConstant::estimate(upL_t precision_words, upL_t tds) const {
    return estimate_of(plan(precision_words, tds));
}

lumo::BigFloat<std::uint64_t> LogConstant::compute(const ComputeContext& context) const {
    print_title(context, algorithm_name(algorithm()));
    for (const machin::Term& term : formula(algorithm()).terms)
        print_title(context, "    " + term_text(term));
    return plan(context.precision_words, context.parallel.tds).run(scratch_of(context), context.status);
}

}  // namespace velmora
