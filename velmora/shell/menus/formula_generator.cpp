#include "velmora/shell/menus/formula_generator.h"

#include <cmath>
#include <cstdio>

#include "lumo/foundation/console/console.h"
#include "velmora/constants/machin/search.h"
#include "velmora/shell/menus/list_menu.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

constexpr std::int64_t LARGEST_TEST = 1000000;

std::string cost_text(double cost) {
    char text[64];
    std::snprintf(text, sizeof text, "%.7f", cost);
    return text;
}

/// By the primes, and by what the terms are worth.
bool passes(const machin::Formula& formula) {
    double sum = 0;
    for (const machin::Term& term : formula.terms)
        sum += static_cast<double>(term.c) * std::atanh(1 / static_cast<double>(term.x));
    return machin::verify(formula) && std::fabs(sum - std::log(static_cast<double>(formula.n))) < 1e-6;
}

bool tell_failure(int number) {
    Console::print_error("Formula " + std::to_string(number) + " failed to pass verification.");
    return false;
}

/// Whether both formulas of n pass; says so if one does not.
bool check(const machin::SearchResult& primary, const machin::SearchResult& secondary) {
    if (!passes(primary.formula)) return tell_failure(0);
    return passes(secondary.formula) || tell_failure(1);
}

void print_result(const machin::SearchResult& result) {
    std::lock_guard lock(Console::lock());
    if (result.cost == machin::NO_FORMULA) {
        Console::print_line("No formula was found.", 'Y');
        return;
    }
    Console::print(machin::to_text(result.formula), 'T');
    Console::print_line("        Cost = " + cost_text(result.cost), 'w');
    if (result.beats_table)
        Console::print_line("The heuristic has found a better formula than the table entry.", 'G');
}

int generate(Program&) {
    const std::int64_t n =
        Console::prompt_integer("n = ", 0, static_cast<std::int64_t>(machin::LARGEST_ARGUMENT));
    Console::new_line();
    if (n == 0) {
        Console::print_error("Error: Log(0)");
        return 1;
    }
    Console::print_line("Generating Primary Formula...       ", 'w');
    const auto primary = machin::search_primary(static_cast<std::uint64_t>(n), machin::RANKING_SIZE);
    print_result(primary);
    Console::new_line();
    Console::print_line("Generating Secondary Formula...     ", 'w');
    const auto secondary = machin::search_secondary(primary.formula, machin::RANKING_SIZE);
    Console::print("Secondary Formula:\n", 'w');
    print_result(secondary);
    const bool found = primary.cost != machin::NO_FORMULA && secondary.cost != machin::NO_FORMULA;
    return found && check(primary, secondary) ? 0 : 1;
}

int test_all(Program&) {
    const std::int64_t limit = Console::prompt_integer("Test up to: ", 2, LARGEST_TEST);
    Console::new_line();
    for (std::uint64_t n = 2; n <= static_cast<std::uint64_t>(limit); ++n) {
        const auto primary = machin::search_primary(n, machin::RANKING_SIZE);
        const auto secondary = machin::search_secondary(primary.formula, machin::RANKING_SIZE);
        Console::print_line("\tLog[" + std::to_string(n) + "] = " + cost_text(primary.cost) + " , " +
                                cost_text(secondary.cost),
                            'w');
        if (!check(primary, secondary)) return 1;
    }
    return 0;
}

}  // namespace

int run_formula_generator(Program& program) {
    return run_list_menu("Log(n) Formula Generator",
                         {
                             {"Generate Formulas", {}, generate},
                             {"Test Formulas", {"-   of all numbers up to a limit"}, test_all},
                         },
                         program);
}

}  // namespace velmora
