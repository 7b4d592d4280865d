#include "lumo/foundation/parallel/settings/parallelism.h"

#include <algorithm>
#include <bit>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/logical_cores.h"
#include "lumo/foundation/parallel/settings/framework_registry.h"

namespace lumo {

namespace {

constexpr const char* TASK_DECOMPOSITION_TEXT[] = {
    "In order to parallelize a task, it must be decomposed to smaller tasks.",
    "However, decomposing tasks incurs CPU and memory overhead.",
    "",
    "  - With fewer tasks, you have less overhead, but you may not achieve high",
    "    utilization of the processor cores.",
    "  - With more tasks, you have more overhead, but better CPU utilization.",
    "",
    "At minimum value, this should be at least the # of logical cores. But it may",
    "be optimal to go even higher. This is known as \"over-decomposition\".",
    "",
};

upL_t default_task_decomposition(upL_t cores) {
    return std::min(std::has_single_bit(cores) ? cores : 2 * cores, MAX_TASK_DECOMPOSITION);
}

bool is_valid(std::int64_t tasks) {
    return tasks >= 1 && upL_t(tasks) <= MAX_TASK_DECOMPOSITION;
}

}  // namespace

Parallelism::Parallelism() : Parallelism(logical_core_count()) {}

Parallelism::Parallelism(upL_t logical_cores)
    : thread_count(logical_cores),
      tds(default_task_decomposition(logical_cores)),
      config(default_parallel_framework()) {}

Parallelism::Parallelism(const Parallelism& other)
    : thread_count(other.thread_count), tds(other.tds), config(other.config->clone()) {}

Parallelism& Parallelism::operator=(const Parallelism& other) {
    if (this != &other) *this = Parallelism(other);
    return *this;
}

void Parallelism::set_task_decomposition(upL_t tasks) {
    if (tasks < 1 || tasks > MAX_TASK_DECOMPOSITION)
        throw InvalidParametersException("", "Task decomposition must be between 1 and " +
                                                 Console::format_commas(MAX_TASK_DECOMPOSITION) + ".");
    tds = tasks;
}

Parallelism Parallelism::from_cfg(const Config::Object& object) {
    Parallelism parallelism;
    // A negative number becomes one beyond the range.
    parallelism.set_task_decomposition(
        upL_t(object.get_optional_integer("TaskDecomposition", std::int64_t(parallelism.tds))));
    parallelism.config = load_parallel_framework(object);
    return parallelism;
}

void Parallelism::to_cfg(Config::Object& object) const {
    object.add_integer("TaskDecomposition", std::int64_t(tds));
    config->to_cfg(object);
}

void Parallelism::to_display_cfg(Config::Object& object) const {
    object.add_integer("TaskDecomposition", std::int64_t(tds));
    config->to_display_cfg(object);
}

void Parallelism::ask_task_decomposition() {
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        Console::print_line("Target Task Decomposition", 'T');
        Console::new_line();
        for (const char* line : TASK_DECOMPOSITION_TEXT) Console::print_line(line);
    }
    std::int64_t answer;
    while (!is_valid(answer = Console::read_integer("Task Decomposition: ")))
        Console::print_line("\nPlease choose a number between 1 and " +
                            Console::format_commas(MAX_TASK_DECOMPOSITION) + ".");
    tds = upL_t(answer);
}

}  // namespace lumo
