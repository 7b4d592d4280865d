#include "velmora/shell/actions/actions.h"

#include <map>

#include "velmora/shell/actions/config_action.h"
#include "velmora/shell/actions/custom_action.h"
#include "velmora/shell/bench/bench_action.h"
#include "velmora/shell/menus/about.h"
#include "velmora/shell/menus/digit_viewer.h"
#include "velmora/shell/menus/main_menu.h"
#include "velmora/shell/menus/validate.h"

namespace velmora {

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
