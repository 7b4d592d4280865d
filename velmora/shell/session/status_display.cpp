#include "velmora/shell/session/status_display.h"

#include <string_view>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/status/linear_console.h"
#include "lumo/foundation/status/parallel_console_status.h"
#include "lumo/foundation/status/parallel_local.h"

namespace velmora {

namespace {

constexpr std::chrono::milliseconds POLLING_PERIOD(200);
constexpr lumo::upL_t LINE_WIDTH = 79;

}  // namespace

StatusDisplay::StatusDisplay(const lumo::Parallelism& parallelism) {
    const bool threaded = std::string_view(parallelism.framework().name()) != "none";
    if (threaded && lumo::Console::output_is_terminal()) {
        root = std::make_unique<lumo::ParallelLocalNode>();
        drawing = std::make_unique<lumo::ParallelConsoleStatus>(*root, POLLING_PERIOD, LINE_WIDTH);
    } else {
        root = std::make_unique<lumo::LinearConsoleNode>(LINE_WIDTH);
    }
}

StatusDisplay::~StatusDisplay() = default;

}  // namespace velmora
