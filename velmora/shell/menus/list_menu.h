/// Menus of numbered rows, of which the user chooses one.
#pragma once

#include <vector>

#include "velmora/shell/entry/program.h"

namespace velmora {

struct MenuRow {
    const char* text;
    std::vector<const char*> details;  ///< lines below the text
    int (*run)(Program&);
};

/// Prints the rows, asks for one and runs it.
int run_list_menu(const char* title, const std::vector<MenuRow>& rows, Program& program);

/// Asks for a number from 0 to `last` under "Enter your choice:".
int ask_option(std::size_t last);

}  // namespace velmora
