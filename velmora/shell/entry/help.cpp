#include "velmora/shell/entry/help.h"

#include "lumo/foundation/console/console.h"
#include "velmora/shell/entry/version.h"

namespace velmora {

namespace {

constexpr std::string_view USAGE = R"(
Computes mathematical constants to very many digits.

Usage:
  velmora [global options]                       the main menu
  velmora [global options] custom                the compute menu
  velmora [global options] custom pi [options]   compute Pi
  velmora [global options] config <file>         run a configuration file
  velmora [global options] about                 about this program
  velmora --help | --version

Options of custom, in any order; a later one overrides an earlier one:
  -dec:<n>          decimal digits, at least 100 (K, M, B, T: -dec:1M); default 1M
  -hex:<n>          the size by hexadecimal digits; 0 switches their output off
  -algorithm:<name> chudnovsky (default), ramanujan, chudnovsky-reduced, ramanujan-reduced
  -mode:ram         where to compute
  -o <folder>       where the digit files go; default: the current folder
  -od:<0|1>         digit files off or on (default)
  -verify:<0|1>     read the written digits back and compare them (default)
  -TD:<n>           task decomposition, 1 to 65536
  -PF:<name>        parallel framework: none, spawn, cppasync, taskqueue, pushpool (default)
  -MA:<name>        memory allocator: malloc, mmap, interleave

Global options, in front of the action:
  colors:<0|1>      coloured output off or on (default)
  pause:<n>         1: wait for ENTER at the end, 0: after failures only (default), -2: never
  priority:<n>      thread priority: -1 lowest real-time (default), 0 leave alone, 1 highest
  PII:<n>           read what identifies this machine (1) or not (-1, default)
  skip-warnings     do not wait when processor features are missing

Exit code: 0 on success, 1 on failure, 130 after an interrupt.
)";

}  // namespace

bool is_help_request(std::string_view argument) {
    return argument == "--help" || argument == "-h" || argument == "help" || argument == "--version";
}

void print_help(std::string_view argument) {
    lumo::Console::print_line(version_text());
    if (argument != "--version") lumo::Console::print(USAGE);
}

}  // namespace velmora
