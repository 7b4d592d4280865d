#include "velmora/shell/menus/about.h"

#include "lumo/foundation/console/console.h"
#include "velmora/shell/entry/version.h"

namespace velmora {

namespace {

constexpr const char* ABOUT_TEXT[] = {
    "velmora computes mathematical constants to very many digits, on all cores of one",
    "machine, with an arbitrary-precision library of its own.",
    "",
    "Everything that a computation takes is planned and shown before it starts. Numbers",
    "carry running hashes, and each large step is checked, so that a fault of hardware",
    "is found instead of printed. Digits are written to files and read back.",
    "",
    "Free software under the MIT license.",
};

}  // namespace

int run_about(Program&) {
    std::lock_guard lock(lumo::Console::lock());
    lumo::Console::print_line(version_text() + "  ( " + tuning_text() + " )", 'Y');
    lumo::Console::new_line();
    lumo::Console::set_color('w');
    for (const char* line : ABOUT_TEXT) lumo::Console::print_line(line);
    return 0;
}

}  // namespace velmora
