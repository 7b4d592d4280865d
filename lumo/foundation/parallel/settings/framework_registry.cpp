#include "lumo/foundation/parallel/settings/framework_registry.h"

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/settings/framework_configs.h"

namespace lumo {

namespace {

template <typename Framework>
std::unique_ptr<ParallelFrameworkConfig> make() {
    return std::make_unique<Framework>();
}

constexpr FrameworkFactory FRAMEWORKS[] = {
    make<NoneConfig>, make<SpawnConfig>, make<CppAsyncConfig>, make<TaskQueueConfig>, make<PushPoolConfig>,
};

}  // namespace

std::span<const FrameworkFactory> parallel_frameworks() {
    return FRAMEWORKS;
}

std::unique_ptr<ParallelFrameworkConfig> make_parallel_framework(std::string_view name) {
    for (FrameworkFactory factory : FRAMEWORKS)
        if (auto framework = factory(); framework->name() == name) return framework;
    throw InvalidParametersException("", "Invalid Parallel Framework: " + std::string(name));
}

std::unique_ptr<ParallelFrameworkConfig> default_parallel_framework() {
    return std::make_unique<PushPoolConfig>();
}

std::unique_ptr<ParallelFrameworkConfig> load_parallel_framework(const Config::Object& object) {
    const std::string name = object.get_optional_string("Framework", default_parallel_framework()->name());
    auto framework = make_parallel_framework(name);
    framework->load(object);
    return framework;
}

std::unique_ptr<ParallelFrameworkConfig> ask_parallel_framework() {
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        Console::print_line("Select a Parallel Framework:", 'T');
        Console::new_line();
        upL_t number = 0;
        for (FrameworkFactory factory : FRAMEWORKS)
            Console::print_line("  " + std::to_string(number++) + "    " + factory()->display_name());
        Console::new_line();
    }
    const std::int64_t choice = Console::prompt_integer("option: ", 0, std::size(FRAMEWORKS) - 1);
    return FRAMEWORKS[choice]();
}

}  // namespace lumo
