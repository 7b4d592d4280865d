#include "lumo/foundation/parallel/settings/framework_config.h"

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/parallel/settings/setting_values.h"

namespace lumo {

void ParallelFrameworkConfig::add_settings(Config::Object& object, bool for_display) const {
    object.add_string("Framework", name());
    for (const FrameworkSetting* setting : settings()) setting->add(values, object, for_display);
}

void ParallelFrameworkConfig::to_cfg(Config::Object& object) const {
    add_settings(object, false);
}

void ParallelFrameworkConfig::to_display_cfg(Config::Object& object) const {
    add_settings(object, true);
}

void ParallelFrameworkConfig::load(const Config::Object& object) {
    for (const FrameworkSetting* setting : settings()) setting->load(values, object);
}

std::string ParallelFrameworkConfig::summary_string(upL_t threads, upL_t task_decomposition) const {
    const std::string tasks = task_decomposition == 0 ? "?" : std::to_string(task_decomposition);
    return std::string(display_name()) + "  ->  " + std::to_string(threads) + " / " + tasks +
           summary_suffix();
}

void ParallelFrameworkConfig::print_summary(upL_t threads, upL_t task_decomposition) const {
    Console::print_line(summary_string(threads, task_decomposition), 'G');
}

upL_t ParallelFrameworkConfig::print_settings(upL_t line) const {
    for (const FrameworkSetting* setting : settings())
        print_setting(line++, setting->label, setting->text(values));
    return line;
}

void ParallelFrameworkConfig::menu_action(upL_t option) {
    if (option < settings().size()) settings()[option]->change(values);
}

}  // namespace lumo
