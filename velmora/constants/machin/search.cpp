#include "velmora/constants/machin/search.h"

#include <algorithm>
#include <cmath>

#include "velmora/constants/machin/smooth_arguments.h"

namespace velmora::machin {
namespace {

constexpr std::size_t MAX_TERMS = 32;
constexpr std::size_t MAX_PRIMES = std::size(SMALL_PRIMES);
constexpr std::size_t FEWEST_PRIMES = 4;

/// How many of the largest arguments over so many primes are combined: more gain nothing, and take time.
constexpr std::size_t COMBINED[MAX_PRIMES + 1] = {0, 0, 0, 0, 36, 20, 16, 14, 13};

using Vector = std::array<std::int64_t, MAX_PRIMES>;

/// Finds the cheapest set of arguments, at most one for each of the first `count` primes, of which whole
/// multiples add up to the target.
class Combination {
 public:
    Combination(std::size_t primes, const Vector& sum, const std::set<std::uint64_t>& used, double d,
                double limit)
        : count(primes), target(sum), best_cost(limit) {
        for (const SmoothArgument& argument : smooth_arguments(count)) {
            if (candidates.size() == COMBINED[count]) break;
            if (used.contains(argument.x)) continue;
            candidates.push_back(argument);
            costs.push_back(cost(argument.x, d) / d);
        }
        if (std::ranges::all_of(target, [](std::int64_t e) { return e == 0; }))
            best_cost = 0;
        else
            extend(0, 0);
    }
    const std::vector<Term>& terms() const { return best; }
    double lowest_cost() const { return best_cost; }

 private:
    /// Costs rise from one candidate to the next.
    void extend(std::size_t from, double so_far) {
        for (std::size_t i = from; i < candidates.size() && so_far + costs[i] < best_cost; ++i) {
            chosen.push_back(i);
            solve(so_far + costs[i]);
            if (chosen.size() < count) extend(i + 1, so_far + costs[i]);
            chosen.pop_back();
        }
    }

    /// Gauss elimination in doubles; what it says is then checked in integers.
    void solve(double total) {
        const std::size_t unknowns = chosen.size();
        double rows[MAX_PRIMES][MAX_PRIMES + 1];
        for (std::size_t p = 0; p < count; ++p) {
            for (std::size_t i = 0; i < unknowns; ++i) rows[p][i] = candidates[chosen[i]].exponents[p];
            rows[p][unknowns] = static_cast<double>(target[p]);
        }
        for (std::size_t i = 0; i < unknowns; ++i) {
            std::size_t pivot = i;
            for (std::size_t p = i + 1; p < count; ++p) {
                if (std::fabs(rows[p][i]) > std::fabs(rows[pivot][i])) pivot = p;
            }
            if (std::fabs(rows[pivot][i]) < 1e-9) return;
            std::swap(rows[i], rows[pivot]);
            for (std::size_t p = 0; p < count; ++p) {
                if (p == i) continue;
                const double factor = rows[p][i] / rows[i][i];
                for (std::size_t j = i; j <= unknowns; ++j) rows[p][j] -= factor * rows[i][j];
            }
        }
        for (std::size_t p = unknowns; p < count; ++p) {
            if (std::fabs(rows[p][unknowns]) > 1e-3) return;
        }
        std::vector<Term> terms;
        Vector rest = target;
        for (std::size_t i = 0; i < unknowns; ++i) {
            const std::int64_t c = std::llround(rows[i][unknowns] / rows[i][i]);
            if (c == 0) return;
            terms.push_back({candidates[chosen[i]].x, c});
            for (std::size_t p = 0; p < count; ++p) rest[p] -= c * candidates[chosen[i]].exponents[p];
        }
        if (!std::ranges::all_of(rest, [](std::int64_t e) { return e == 0; })) return;
        best = std::move(terms);
        best_cost = total;
    }

    std::size_t count;
    Vector target;
    std::vector<SmoothArgument> candidates;
    std::vector<double> costs;
    std::vector<std::size_t> chosen;
    std::vector<Term> best;
    double best_cost;
};

/// The cheapest formula over the first `count` primes that costs less than `limit`, or no terms.
Formula heuristic(std::uint64_t n, std::size_t count, const std::set<std::uint64_t>& used, double d,
                  double limit) {
    Formula formula{n, {}};
    Exponents rest = factor(n, 2);
    double spent = 0;
    // The largest prime first: its argument may bring in smaller ones. No two primes share one, since the
    // neighbour on its other side holds smaller ones only.
    while (!rest.empty() && rest.rbegin()->first > SMALL_PRIMES[count - 1]) {
        const std::uint64_t q = rest.rbegin()->first;
        const std::optional<std::uint64_t> x = argument_with_prime(q, count, used);
        if (!x || formula.terms.size() + count >= MAX_TERMS) return {n, {}};
        Exponents relation = factor(*x + 1, 1);
        add(relation, factor(*x - 1, -1));
        const std::int64_t c = rest[q] / relation[q];
        for (auto& [prime, exponent] : relation) exponent *= -c;
        add(rest, relation);
        formula.terms.push_back({*x, c});
        spent += cost(*x, d) / d;
    }
    Vector target{};
    for (std::size_t i = 0; i < count; ++i) {
        if (const auto found = rest.find(SMALL_PRIMES[i]); found != rest.end()) target[i] = found->second;
    }
    const Combination basis(count, target, used, d, limit - spent);
    if (spent + basis.lowest_cost() >= limit) return {n, {}};
    formula.terms.insert(formula.terms.end(), basis.terms().begin(), basis.terms().end());
    return formula;
}

SearchResult search_without(std::uint64_t n, Which which, double d, const std::set<std::uint64_t>& used) {
    SearchResult result;
    result.formula.n = n;
    result.cost = lookup(n, 1, which, d, result.formula);
    if (n == 1) return result;
    if (std::ranges::any_of(result.formula.terms, [&](const Term& t) { return used.contains(t.x); })) {
        result.formula.terms.clear();
        result.cost = NO_FORMULA;
    }
    // An entry that may not be used is none to be beaten.
    const bool in_table = result.cost < NO_FORMULA;
    for (std::size_t count = FEWEST_PRIMES; count <= MAX_PRIMES; ++count) {
        Formula found = heuristic(n, count, used, d, result.cost);
        if (found.terms.empty() || !verify(found)) continue;
        result.cost = cost(found, d);
        result.formula = std::move(found);
        result.beats_table = in_table;
    }
    std::ranges::sort(result.formula.terms, {}, &Term::x);
    return result;
}

}  // namespace

SearchResult search_primary(std::uint64_t n, double d) {
    return search_without(n, Which::primary, d, {});
}

SearchResult search_secondary(const Formula& primary, double d) {
    std::set<std::uint64_t> used;
    for (const Term& term : primary.terms) used.insert(term.x);
    return search_without(primary.n, Which::secondary, d, used);
}

}  // namespace velmora::machin
