#include "velmora/shell/entry/actions.h"

#include <map>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/fatal.h"
#include "velmora/shell/bench/bench_action.h"
#include "velmora/shell/entry/config_action.h"
#include "velmora/shell/entry/custom_action.h"
#include "velmora/shell/menus/about.h"
#include "velmora/shell/menus/digit_viewer.h"
#include "velmora/shell/menus/main_menu.h"
#include "velmora/shell/menus/validate.h"

namespace velmora {

void reject_parameter(const std::string& key) {
    lumo::Console::print_error("Invalid Parameter: " + key);
    lumo::exit_with_pause(1);
}

int dispatch_action(Program& program) {
    const std::map<std::string, Action> actions = {
        {"bench", run_bench}, {"custom", run_custom},     {"config", run_config},
        {"about", run_about}, {"validate", run_validate}, {"digitviewer", run_digit_viewer},
    };
    if (program.arguments.at_end()) return run_main_menu(program);
    const std::string key = program.arguments.current_key();
    const auto found = actions.find(key);
    if (found == actions.end()) reject_parameter(key);
    program.arguments.advance();
    return found->second(program);
}

}  // namespace velmora
