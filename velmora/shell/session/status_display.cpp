#include "velmora/shell/session/status_display.h"

#include <string_view>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/status/linear_console.h"
#include "lumo/foundation/status/parallel_console_status.h"
#include "lumo/foundation/status/parallel_local.h"

namespace velmora {

namespace {

constexpr std::chrono::milliseconds POLLING_PERIOD(200);

}  // namespace

StatusDisplay::StatusDisplay(const lumo::Parallelism& parallelism) {
    const bool threaded = std::string_view(parallelism.framework().name()) != "none";
    const lumo::upL_t line_width = lumo::Console::status_width();
    if (threaded && lumo::Console::output_is_terminal()) {
        root = std::make_unique<lumo::ParallelLocalNode>();
        drawing = std::make_unique<lumo::ParallelConsoleStatus>(*root, POLLING_PERIOD, line_width);
    } else {
        root = std::make_unique<lumo::LinearConsoleNode>(line_width);
    }
}

StatusDisplay::~StatusDisplay() = default;

}  // namespace velmora
