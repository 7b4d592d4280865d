#include "velmora/shell/entry/help.h"

#include "lumo/foundation/console/console.h"
#include "velmora/constants/constant.h"
#include "velmora/shell/entry/version.h"

namespace velmora {

namespace {

constexpr std::string_view USAGE = R"(
Computes mathematical constants to very many digits.

Usage:
  velmora [global options]                               the main menu
  velmora [global options] custom                        the compute menu
  velmora [global options] custom <constant> [options]   compute a constant
  velmora [global options] bench                         the menu of benchmarks
  velmora [global options] bench <size> [options]        time Pi: 25m to 2.5t digits, or 1M to 128G
  velmora [global options] config <file>                 run a configuration file
  velmora [global options] digitviewer                   look at digit files, count and convert them
  velmora [global options] validate                      check the record of a run
  velmora [global options] about                         about this program
  velmora --help | -h | help | --version

Constants with their algorithms, the default first:
)";

constexpr std::string_view OPTIONS = R"(
Options of custom, in any order; a later one overrides an earlier one. Those with a star are bench's too:
  -dec:<n>          decimal digits, at least 100 (K, M, B, T: -dec:1M); default 1M
  -hex:<n>          the size by hexadecimal digits; 0 switches their output off
  -algorithm:<name> one of the constant's
  -mode:ram         where to compute
* -o <folder>       where the digit files go; default: the current folder
* -od:<0|1>         digit files off or on (default)
  -C:<n>, -compress:<n>
                    compressed digit files of n digits; -1: one file; 0: text files (default)
  -verify:<0|1>     read the written digits back and compare them (default)
* -TD:<n>           task decomposition, 1 to 65536
* -PF:<name>        parallel framework: none, spawn, cppasync, taskqueue, pushpool (default)
* -MA:<name>        memory allocator: malloc, mmap, interleave

Global options, in front of the action:
  colors:<0|1>      coloured output off or on (default, without NO_COLOR in the environment)
  pause:<n>         1: wait for ENTER at the end, 0: after failures only (default), -2: never
  priority:<n>      thread priority: -1 lowest real-time (default), 0 leave alone, 1 highest
  PII:<n>           read what identifies this machine (1) or not (-1, default)
  skip-warnings     do not wait when processor features are missing
  height:<n>        accepted, without effect

Exit code: 0 on success, 1 on failure, 130 after an interrupt.
)";

void print_constants() {
    for (const CatalogueEntry& row : catalogue()) {
        if (!row.make) continue;
        std::string names = "  ";
        for (const char* name : row.command_names) {
            if (names.size() > 2) names += ", ";
            names += name;
            if (make_constant(row)->takes_argument()) names += ":<n>";
        }
        if (names.size() < 26) names.resize(26, ' ');
        std::string algorithms;
        for (const AlgorithmEntry& algorithm : row.algorithms)
            algorithms += (algorithms.empty() ? "" : ", ") + std::string(algorithm.token);
        lumo::Console::print_line(names + algorithms);
    }
}

}  // namespace

bool is_help_request(std::string_view argument) {
    return argument == "--help" || argument == "-h" || argument == "help" || argument == "--version";
}

void print_help(std::string_view argument) {
    lumo::Console::print_line(version_text());
    if (argument == "--version") return;
    lumo::Console::print(USAGE);
    print_constants();
    lumo::Console::print(OPTIONS);
}

}  // namespace velmora
