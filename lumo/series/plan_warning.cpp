#include "lumo/series/plan_warning.h"

#include <string>

#include "lumo/foundation/console/console.h"

namespace lumo {

void watch_plan(upL_t blocks) {
    if (blocks != BLOCK_PLAN_WARNING) return;
    Console::print_error("Performance Warning: PSR plan has exceeded 10000 blocks.");
}

void check_plan(upL_t blocks) {
    if (blocks + 1 < BLOCK_PLAN_WARNING) return;
    Console::print_error("PSR plan has reached a size of " + std::to_string(blocks) +
                         "\nIt is not recommended to proceed with such a computation.\n");
    Console::print_line("If you are seeing this message, it means the series is either too slow or", 'Y');
    Console::print_line("there is something wrong with its convergence behavior.", 'Y');
    Console::pause();
}

}  // namespace lumo
