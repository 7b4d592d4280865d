#include "lumo/foundation/parallel/settings/framework_configs.h"

#include "lumo/foundation/parallel/cppasync.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/foundation/parallel/serial.h"
#include "lumo/foundation/parallel/settings/setting_values.h"
#include "lumo/foundation/parallel/spawn.h"
#include "lumo/foundation/parallel/taskqueue.h"

namespace lumo {

namespace {

constexpr const char* MAX_SEQUENTIAL_LABEL = "    Max Sequential Dispatch:    ";
constexpr const char* WORKERS_LABEL = "    Worker Threads:";

void print_max_sequential(upL_t line, upL_t value) {
    print_setting(line, MAX_SEQUENTIAL_LABEL, std::to_string(value));
}

}  // namespace

std::unique_ptr<BasicParallelizer> NoneConfig::make_parallelizer() const {
    return std::make_unique<SerialParallelizer>();
}
std::unique_ptr<ParallelFrameworkConfig> NoneConfig::clone() const {
    return std::make_unique<NoneConfig>(*this);
}

std::unique_ptr<BasicParallelizer> SpawnConfig::make_parallelizer() const {
    return std::make_unique<SpawnParallelizer>(max_sequential_dispatch);
}
std::unique_ptr<ParallelFrameworkConfig> SpawnConfig::clone() const {
    return std::make_unique<SpawnConfig>(*this);
}
void SpawnConfig::load(const Config::Object& object) {
    max_sequential_dispatch = load_max_sequential_dispatch(object, max_sequential_dispatch);
}
void SpawnConfig::add_settings(Config::Object& object, bool for_display) const {
    add_max_sequential_dispatch(object, max_sequential_dispatch, for_display);
}
upL_t SpawnConfig::print_settings(upL_t line) const {
    print_max_sequential(line, max_sequential_dispatch);
    return line + 1;
}
void SpawnConfig::menu_action(upL_t option) {
    if (option == 0) max_sequential_dispatch = ask_max_sequential_dispatch();
}

std::unique_ptr<BasicParallelizer> CppAsyncConfig::make_parallelizer() const {
    return std::make_unique<CppAsyncParallelizer>(async_only, max_sequential_dispatch);
}
std::unique_ptr<ParallelFrameworkConfig> CppAsyncConfig::clone() const {
    return std::make_unique<CppAsyncConfig>(*this);
}
void CppAsyncConfig::load(const Config::Object& object) {
    async_only = load_flag(object, "AsyncOnly", async_only);
    max_sequential_dispatch = load_max_sequential_dispatch(object, max_sequential_dispatch);
}
void CppAsyncConfig::add_settings(Config::Object& object, bool for_display) const {
    add_flag(object, "AsyncOnly", async_only);
    add_max_sequential_dispatch(object, max_sequential_dispatch, for_display);
}
std::string CppAsyncConfig::summary_suffix() const {
    return async_only ? "  (async only)" : "  (async | deferred)";
}
upL_t CppAsyncConfig::print_settings(upL_t line) const {
    print_setting(line, "    Launch Policy:",
                  async_only ? "std::launch::async" : "std::launch::async | std::launch::deferred");
    print_max_sequential(line + 1, max_sequential_dispatch);
    return line + 2;
}
void CppAsyncConfig::menu_action(upL_t option) {
    if (option == 0) async_only = !async_only;
    if (option == 1) max_sequential_dispatch = ask_max_sequential_dispatch();
}

std::unique_ptr<BasicParallelizer> TaskQueueConfig::make_parallelizer() const {
    return std::make_unique<TaskQueue>(worker_threads);
}
std::unique_ptr<ParallelFrameworkConfig> TaskQueueConfig::clone() const {
    return std::make_unique<TaskQueueConfig>(*this);
}
void TaskQueueConfig::load(const Config::Object& object) {
    worker_threads = load_worker_threads(object, worker_threads);
}
void TaskQueueConfig::add_settings(Config::Object& object, bool) const {
    object.add_integer("WorkerThreads", std::int64_t(worker_threads));
}
upL_t TaskQueueConfig::print_settings(upL_t line) const {
    print_setting(line, WORKERS_LABEL, worker_threads_text(worker_threads));
    return line + 1;
}
void TaskQueueConfig::menu_action(upL_t option) {
    if (option == 0) worker_threads = ask_worker_threads();
}

std::unique_ptr<BasicParallelizer> PushPoolConfig::make_parallelizer() const {
    return std::make_unique<PushPoolParallelizer>(worker_threads, randomization, max_sequential_dispatch);
}
std::unique_ptr<ParallelFrameworkConfig> PushPoolConfig::clone() const {
    return std::make_unique<PushPoolConfig>(*this);
}
void PushPoolConfig::load(const Config::Object& object) {
    worker_threads = load_worker_threads(object, worker_threads);
    randomization = load_flag(object, "Randomization", randomization);
    max_sequential_dispatch = load_max_sequential_dispatch(object, max_sequential_dispatch);
}
void PushPoolConfig::add_settings(Config::Object& object, bool for_display) const {
    object.add_integer("WorkerThreads", std::int64_t(worker_threads));
    add_flag(object, "Randomization", randomization);
    add_max_sequential_dispatch(object, max_sequential_dispatch, for_display);
}
std::string PushPoolConfig::summary_suffix() const {
    return randomization ? "  (randomization on)" : "  (randomization off)";
}
upL_t PushPoolConfig::print_settings(upL_t line) const {
    print_setting(line, WORKERS_LABEL, worker_threads_text(worker_threads));
    print_setting(line + 1, "    Thread Randomization:", randomization ? "Enabled" : "Disabled");
    print_max_sequential(line + 2, max_sequential_dispatch);
    return line + 3;
}
void PushPoolConfig::menu_action(upL_t option) {
    if (option == 0) worker_threads = ask_worker_threads();
    if (option == 1) randomization = !randomization;
    if (option == 2) max_sequential_dispatch = ask_max_sequential_dispatch();
}

}  // namespace lumo
