#include "lumo/foundation/parallel/settings/framework_setting.h"

#include <algorithm>
#include <limits>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/settings/setting_values.h"

namespace lumo {

namespace {

constexpr const char* MAX_SEQUENTIAL_DISPATCH_TEXT[] = {
    "Max Sequential Dispatch",
    "",
    "    This parameter puts a limit on the maximum number of tasks that can be",
    "issued sequentially before a recursive fan-out is required. This controls the",
    "exponential fan-out of tasks onto threads.",
    "",
    "Smaller values have shorter critical paths, but require more recursive dispatch",
    "generations to reach full utilization.",
    "",
    "Larger values have longer critical paths in each generation, but require fewer",
    "recursive dispatch generations.",
    "",
};

constexpr std::int64_t LARGEST_ANSWER = std::numeric_limits<std::int64_t>::max();

std::string worker_threads_text(const FrameworkValues& values) {
    return values.worker_threads == 0 ? "Unlimited" : Console::format_commas(values.worker_threads);
}

void load_worker_threads(FrameworkValues& values, const Config::Object& object) {
    const std::int64_t number =
        object.get_optional_integer("WorkerThreads", std::int64_t(values.worker_threads));
    if (number < 0) throw InvalidParametersException("", "The number of worker threads cannot be negative.");
    values.worker_threads = std::min(upL_t(number), MAX_WORKER_THREADS);
}

void ask_worker_threads(FrameworkValues& values) {
    const std::int64_t answer =
        Console::prompt_integer("Threads (0 for unlimited threads): ", 0, LARGEST_ANSWER);
    values.worker_threads = std::min(upL_t(answer), MAX_WORKER_THREADS);
}

void load_max_sequential_dispatch(FrameworkValues& values, const Config::Object& object) {
    const std::int64_t number =
        object.get_optional_integer("MaxSequentialDispatch", std::int64_t(values.max_sequential_dispatch));
    values.max_sequential_dispatch = upL_t(std::max(number, std::int64_t(SMALLEST_MAX_SEQUENTIAL_DISPATCH)));
}

void add_max_sequential_dispatch(const FrameworkValues& values, Config::Object& object, bool for_display) {
    const upL_t value = values.max_sequential_dispatch;
    if (!for_display) {
        object.add_integer("MaxSequentialDispatch", std::int64_t(value));
        return;
    }
    Config::Object& shown = object.add_object("MaxSequentialDispatch");
    shown.add_integer("Value", std::int64_t(value));
    shown.add_string("DisplayText", Console::format_commas(value));
}

void ask_max_sequential_dispatch(FrameworkValues& values) {
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        for (const char* line : MAX_SEQUENTIAL_DISPATCH_TEXT) Console::print_line(line);
    }
    const std::int64_t answer = Console::prompt_integer("Value = ", 0, LARGEST_ANSWER);
    values.max_sequential_dispatch = std::max(upL_t(answer), SMALLEST_MAX_SEQUENTIAL_DISPATCH);
}

}  // namespace

using Values = FrameworkValues;

const FrameworkSetting ASYNC_ONLY = {
    "    Launch Policy:",
    [](const Values& v) -> std::string {
        return v.async_only ? "std::launch::async" : "std::launch::async | std::launch::deferred";
    },
    [](Values& v, const Config::Object& object) {
        v.async_only = load_flag(object, "AsyncOnly", v.async_only);
    },
    [](const Values& v, Config::Object& object, bool) { add_flag(object, "AsyncOnly", v.async_only); },
    [](Values& v) { v.async_only = !v.async_only; },
};

const FrameworkSetting RANDOMIZATION = {
    "    Thread Randomization:",
    [](const Values& v) -> std::string { return v.randomization ? "Enabled" : "Disabled"; },
    [](Values& v, const Config::Object& object) {
        v.randomization = load_flag(object, "Randomization", v.randomization);
    },
    [](const Values& v, Config::Object& object, bool) { add_flag(object, "Randomization", v.randomization); },
    [](Values& v) { v.randomization = !v.randomization; },
};

const FrameworkSetting WORKER_THREADS = {
    "    Worker Threads:",
    worker_threads_text,
    load_worker_threads,
    [](const Values& v, Config::Object& object, bool) {
        object.add_integer("WorkerThreads", std::int64_t(v.worker_threads));
    },
    ask_worker_threads,
};

const FrameworkSetting MAX_SEQUENTIAL_DISPATCH = {
    "    Max Sequential Dispatch:    ",
    [](const Values& v) { return std::to_string(v.max_sequential_dispatch); },
    load_max_sequential_dispatch,
    add_max_sequential_dispatch,
    ask_max_sequential_dispatch,
};

}  // namespace lumo
