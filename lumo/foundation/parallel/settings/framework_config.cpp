#include "lumo/foundation/parallel/settings/framework_config.h"

#include "lumo/foundation/console/console.h"

namespace lumo {

void ParallelFrameworkConfig::to_cfg(Config::Object& object) const {
    object.add_string("Framework", name());
    add_settings(object, false);
}

void ParallelFrameworkConfig::to_display_cfg(Config::Object& object) const {
    object.add_string("Framework", name());
    add_settings(object, true);
}

std::string ParallelFrameworkConfig::summary_string(upL_t threads, upL_t task_decomposition) const {
    const std::string tasks = task_decomposition == 0 ? "?" : std::to_string(task_decomposition);
    return std::string(display_name()) + "  ->  " + std::to_string(threads) + " / " + tasks +
           summary_suffix();
}

void ParallelFrameworkConfig::print_summary(upL_t threads, upL_t task_decomposition) const {
    Console::print_line(summary_string(threads, task_decomposition), 'G');
}

// The framework without threads has no settings; these are its forms.
void ParallelFrameworkConfig::load(const Config::Object&) {}
upL_t ParallelFrameworkConfig::print_settings(upL_t line) const {
    return line;
}
void ParallelFrameworkConfig::menu_action(upL_t) {}
void ParallelFrameworkConfig::add_settings(Config::Object&, bool) const {}

}  // namespace lumo
