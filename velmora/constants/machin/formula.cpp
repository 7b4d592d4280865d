#include "velmora/constants/machin/formula.h"

#include <cmath>

#include "velmora/constants/machin/factors.h"

namespace velmora::machin {

double cost(std::uint64_t x, double d) {
    const double t = d / std::log(static_cast<double>(x));
    const double u = t * 0.69314718055994531 + ((t + 0.5) * std::log(t) - t) - 0.08106146679532726;
    return 0.7813 * d + 2 * (u + d) + u;
}

double cost(const Formula& formula, double d) {
    double sum = 0;
    for (const Term& term : formula.terms) sum += cost(term.x, d);
    return sum / d;
}

bool verify(const Formula& formula) {
    // Twice the logarithm: ArcCoth(x) is half of log((x + 1) / (x - 1)).
    Exponents rest = factor(formula.n, 2);
    for (const Term& term : formula.terms) {
        if (term.x < 2) return false;
        add(rest, factor(term.x + 1, -term.c));
        add(rest, factor(term.x - 1, term.c));
    }
    return rest.empty();
}

std::string to_text(const Formula& formula) {
    std::string text = "Log[" + std::to_string(formula.n) + "] = \n";
    for (const Term& term : formula.terms)
        text +=
            std::string(20, ' ') + std::to_string(term.c) + " * ArcCoth[" + std::to_string(term.x) + "]\n";
    return text;
}

}  // namespace velmora::machin
