#include "velmora/shell/actions/config_action.h"

#include "lumo/foundation/config/reader.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "velmora/shell/session/session_cfg.h"

namespace velmora {

int run_config(Program& program) {
    if (program.arguments.at_end() || program.arguments.current_raw().empty())
        throw lumo::InvalidParametersException("", "Please specify a config file.");
    std::string path = program.arguments.current_raw();
    if (path.find('.') == std::string::npos) path += ".cfg";

    const lumo::Config::ValuePtr file = lumo::Config::parse_file(path);
    const lumo::Config::Object& root = file->to_object();
    const std::string& action = root.get_string("Action");
    if (action != "CustomCompute") throw lumo::InvalidParametersException("", "Invalid Action: " + action);
    const auto session = load_session(program.hardware, root.get_object("CustomCompute"));
    if (!session->can_run(true))
        throw lumo::InvalidParametersException("", "Cannot run computation with these parameters.");
    lumo::Console::new_line();
    session->run();
    return 0;
}

}  // namespace velmora
