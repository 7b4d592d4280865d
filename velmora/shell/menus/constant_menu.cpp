// The menus of constants and of algorithms.

#include <algorithm>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "velmora/shell/menus/compute_menu.h"
#include "velmora/shell/menus/list_menu.h"

namespace velmora {

namespace Console = lumo::Console;

namespace {

std::string padded(std::string text, std::size_t columns) {
    if (text.size() < columns) text.resize(columns, ' ');
    return text;
}

void print_constant(std::size_t number, const CatalogueEntry& row) {
    Console::print(padded("  " + std::to_string(number), 12), 'G');
    Console::print(padded(row.menu_name, 30), 'w');
    Console::print(padded(row.value, 18), 'T');
    Console::print_line(row.difficulty, 'w');
}

/// The first line behind the name, the others below it.
void print_remark(const std::string& remark) {
    std::size_t end = remark.find('\n');
    Console::print_line(remark.substr(0, end), 'g');
    while (end != std::string::npos && end + 1 < remark.size()) {
        const std::size_t start = end + 1;
        end = remark.find('\n', start);
        Console::print_line(std::string(8, ' ') + remark.substr(start, end - start), 'g');
    }
}

/// Asks until the constant takes the number. Throws EndOfInput.
void ask_argument(Constant& constant) {
    for (;;) {
        Console::new_line();
        const std::string answer = Console::read_answer("n = ");
        try {
            constant.set_argument(answer);
            return;
        } catch (const lumo::InvalidParametersException& refused) {
            Console::print_error(refused.message);
        }
    }
}

}  // namespace

std::unique_ptr<Constant> ask_constant() {
    std::vector<const CatalogueEntry*> offered;
    std::string_view group;
    std::string_view printed_group;
    {
        std::lock_guard lock(Console::lock());
        Console::print_line("Compute a Constant: (in ascending order of difficulty to compute)\n", 'w');
        Console::print_line(
            "  #         Constant                      Value        Approximate Difficulty*\n");
        for (const CatalogueEntry& row : catalogue()) {
            if (*row.group != '\0') group = row.group;
            if (!row.make) continue;
            if (group != printed_group) Console::print_line(group, 'T');
            printed_group = group;
            print_constant(offered.size(), row);
            offered.push_back(&row);
        }
        Console::new_line();
        Console::print_line("*Actual numbers will vary. Radix conversion = 1.00", 'w');
    }
    auto constant = make_constant(*offered[ask_option(offered.size() - 1)]);
    if (constant->takes_argument()) ask_argument(*constant);
    return constant;
}

void ask_algorithm(NormalFloatSession& session) {
    const Constant& constant = session.constant();
    const CatalogueEntry& entry = constant.entry();
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        Console::print_line("Select an Algorithm:\n", 'w');
        for (std::size_t i = 0; i < entry.algorithms.size(); i++) {
            const AlgorithmEntry& algorithm = entry.algorithms[i];
            Console::print(padded("  " + std::to_string(i), 8), 'G');
            Console::print(padded(constant.algorithm_name(algorithm), 32), 'w');
            print_remark(constant.algorithm_remark(algorithm));
        }
        Console::set_color('w');
        if (!entry.notes.empty()) Console::new_line();
        for (const char* note : entry.notes) Console::print_line(note);
    }
    session.set_algorithm(entry.algorithms[ask_option(entry.algorithms.size() - 1)].token);
}

}  // namespace velmora
