#include "velmora/shell/session/run_session.h"

#include "lumo/foundation/console/console.h"

namespace velmora {

int run_session(NormalFloatSession& session) {
    lumo::Console::new_line();
    if (!session.can_run(true)) return 1;
    lumo::Console::new_line();
    session.run();
    return 0;
}

}  // namespace velmora
