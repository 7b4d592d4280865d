#include "lumo/foundation/parallel/settings/setting_values.h"

#include <algorithm>
#include <limits>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/dispatch/fan_out.h"

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

}  // namespace

bool load_flag(const Config::Object& object, const char* key, bool otherwise) {
    const std::string word = object.get_optional_string(key, otherwise ? "true" : "false");
    if (word != "true" && word != "false") throw ParseException("", "Expected true or false.");
    return word == "true";
}

void add_flag(Config::Object& object, const char* key, bool value) {
    object.add_string(key, value ? "true" : "false");
}

upL_t load_worker_threads(const Config::Object& object, upL_t otherwise) {
    const std::int64_t number = object.get_optional_integer("WorkerThreads", std::int64_t(otherwise));
    if (number < 0) throw InvalidParametersException("", "The number of worker threads cannot be negative.");
    return std::min(upL_t(number), MAX_WORKER_THREADS);
}

upL_t load_max_sequential_dispatch(const Config::Object& object, upL_t otherwise) {
    const std::int64_t number = object.get_optional_integer("MaxSequentialDispatch", std::int64_t(otherwise));
    return upL_t(std::max(number, std::int64_t(SMALLEST_MAX_SEQUENTIAL_DISPATCH)));
}

void add_max_sequential_dispatch(Config::Object& object, upL_t value, bool for_display) {
    if (!for_display) {
        object.add_integer("MaxSequentialDispatch", std::int64_t(value));
        return;
    }
    Config::Object& shown = object.add_object("MaxSequentialDispatch");
    shown.add_integer("Value", std::int64_t(value));
    shown.add_string("DisplayText", Console::format_commas(value));
}

upL_t ask_worker_threads() {
    const std::int64_t answer =
        Console::prompt_integer("Threads (0 for unlimited threads): ", 0, LARGEST_ANSWER);
    return std::min(upL_t(answer), MAX_WORKER_THREADS);
}

upL_t ask_max_sequential_dispatch() {
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        for (const char* line : MAX_SEQUENTIAL_DISPATCH_TEXT) Console::print_line(line);
    }
    const std::int64_t answer = Console::prompt_integer("Value = ", 0, LARGEST_ANSWER);
    return std::max(upL_t(answer), SMALLEST_MAX_SEQUENTIAL_DISPATCH);
}

void print_setting(upL_t line, const char* label, const std::string& value) {
    constexpr std::size_t LABEL_COLUMNS = 32;
    std::string number = std::to_string(line);
    if (number.size() < 3) number.insert(0, 3 - number.size(), ' ');
    std::string padded(label);
    if (padded.size() < LABEL_COLUMNS) padded.resize(LABEL_COLUMNS, ' ');
    std::lock_guard lock(Console::lock());
    Console::print(number + padded);
    Console::print_line(value, 'G');
}

std::string worker_threads_text(upL_t worker_threads) {
    return worker_threads == 0 ? "Unlimited" : Console::format_commas(worker_threads);
}

}  // namespace lumo
