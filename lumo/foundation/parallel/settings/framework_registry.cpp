#include "lumo/foundation/parallel/settings/framework_registry.h"

#include <array>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/cppasync.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/foundation/parallel/serial.h"
#include "lumo/foundation/parallel/spawn.h"
#include "lumo/foundation/parallel/taskqueue.h"

namespace lumo {

namespace {

/// What a class with its names and settings as constants adds to them.
template <typename Framework>
class FrameworkOf : public ParallelFrameworkConfig {
 public:
    const char* name() const override { return Framework::NAME; }
    const char* display_name() const override { return Framework::DISPLAY_NAME; }
    std::unique_ptr<ParallelFrameworkConfig> clone() const override {
        return std::make_unique<Framework>(static_cast<const Framework&>(*this));
    }

 protected:
    std::span<const FrameworkSetting* const> settings() const override { return Framework::SETTINGS; }
};

class NoneConfig final : public FrameworkOf<NoneConfig> {
 public:
    static constexpr const char *NAME = "none", *DISPLAY_NAME = "None (No Multi-threading)";
    static constexpr std::array<const FrameworkSetting*, 0> SETTINGS{};
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override {
        return std::make_unique<SerialParallelizer>();
    }
};

class SpawnConfig final : public FrameworkOf<SpawnConfig> {
 public:
    static constexpr const char *NAME = "spawn", *DISPLAY_NAME = "Thread Spawn (1 Thread/Task)";
    static constexpr std::array SETTINGS{&MAX_SEQUENTIAL_DISPATCH};
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override {
        return std::make_unique<SpawnParallelizer>(values.max_sequential_dispatch);
    }
};

class CppAsyncConfig final : public FrameworkOf<CppAsyncConfig> {
 public:
    static constexpr const char *NAME = "cppasync", *DISPLAY_NAME = "C++ std::async()";
    static constexpr std::array SETTINGS{&ASYNC_ONLY, &MAX_SEQUENTIAL_DISPATCH};
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override {
        return std::make_unique<CppAsyncParallelizer>(values.async_only, values.max_sequential_dispatch);
    }
    std::string summary_suffix() const override {
        return values.async_only ? "  (async only)" : "  (async | deferred)";
    }
};

class TaskQueueConfig final : public FrameworkOf<TaskQueueConfig> {
 public:
    static constexpr const char *NAME = "taskqueue", *DISPLAY_NAME = "Central Dispatch Queue";
    static constexpr std::array SETTINGS{&WORKER_THREADS};
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override {
        return std::make_unique<TaskQueue>(values.worker_threads);
    }
};

class PushPoolConfig final : public FrameworkOf<PushPoolConfig> {
 public:
    static constexpr const char *NAME = "pushpool", *DISPLAY_NAME = "Push Pool";
    static constexpr std::array SETTINGS{&WORKER_THREADS, &RANDOMIZATION, &MAX_SEQUENTIAL_DISPATCH};
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override {
        return std::make_unique<PushPoolParallelizer>(values.worker_threads, values.randomization,
                                                      values.max_sequential_dispatch);
    }
    std::string summary_suffix() const override {
        return values.randomization ? "  (randomization on)" : "  (randomization off)";
    }
};

using FrameworkFactory = std::unique_ptr<ParallelFrameworkConfig> (*)();

template <typename Framework>
std::unique_ptr<ParallelFrameworkConfig> make() {
    return std::make_unique<Framework>();
}

constexpr FrameworkFactory FRAMEWORKS[] = {
    make<NoneConfig>, make<SpawnConfig>, make<CppAsyncConfig>, make<TaskQueueConfig>, make<PushPoolConfig>,
};

}  // namespace

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
    std::vector<std::string> names;
    for (FrameworkFactory factory : FRAMEWORKS) names.push_back(factory()->display_name());
    return FRAMEWORKS[Console::choose("Select a Parallel Framework:", names)]();
}

}  // namespace lumo
