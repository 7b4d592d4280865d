/// The five frameworks.
#pragma once

#include "lumo/foundation/parallel/dispatch/fan_out.h"
#include "lumo/foundation/parallel/settings/framework_config.h"

namespace lumo {

class NoneConfig final : public ParallelFrameworkConfig {
 public:
    const char* name() const override { return "none"; }
    const char* display_name() const override { return "None (No Multi-threading)"; }
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override;
    std::unique_ptr<ParallelFrameworkConfig> clone() const override;
};

class SpawnConfig final : public ParallelFrameworkConfig {
 public:
    upL_t max_sequential_dispatch = DEFAULT_MAX_SEQUENTIAL_DISPATCH;

    const char* name() const override { return "spawn"; }
    const char* display_name() const override { return "Thread Spawn (1 Thread/Task)"; }
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override;
    std::unique_ptr<ParallelFrameworkConfig> clone() const override;
    void load(const Config::Object& object) override;
    upL_t print_settings(upL_t line) const override;
    void menu_action(upL_t option) override;

 protected:
    void add_settings(Config::Object& object, bool for_display) const override;
};

class CppAsyncConfig final : public ParallelFrameworkConfig {
 public:
    bool async_only = true;
    upL_t max_sequential_dispatch = DEFAULT_MAX_SEQUENTIAL_DISPATCH;

    const char* name() const override { return "cppasync"; }
    const char* display_name() const override { return "C++ std::async()"; }
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override;
    std::unique_ptr<ParallelFrameworkConfig> clone() const override;
    void load(const Config::Object& object) override;
    upL_t print_settings(upL_t line) const override;
    void menu_action(upL_t option) override;

 protected:
    void add_settings(Config::Object& object, bool for_display) const override;
    std::string summary_suffix() const override;
};

class TaskQueueConfig final : public ParallelFrameworkConfig {
 public:
    upL_t worker_threads = 0;  ///< 0 is unlimited

    const char* name() const override { return "taskqueue"; }
    const char* display_name() const override { return "Central Dispatch Queue"; }
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override;
    std::unique_ptr<ParallelFrameworkConfig> clone() const override;
    void load(const Config::Object& object) override;
    upL_t print_settings(upL_t line) const override;
    void menu_action(upL_t option) override;

 protected:
    void add_settings(Config::Object& object, bool for_display) const override;
};

class PushPoolConfig final : public ParallelFrameworkConfig {
 public:
    upL_t worker_threads = 0;  ///< 0 is unlimited
    bool randomization = true;
    upL_t max_sequential_dispatch = DEFAULT_MAX_SEQUENTIAL_DISPATCH;

    const char* name() const override { return "pushpool"; }
    const char* display_name() const override { return "Push Pool"; }
    std::unique_ptr<BasicParallelizer> make_parallelizer() const override;
    std::unique_ptr<ParallelFrameworkConfig> clone() const override;
    void load(const Config::Object& object) override;
    upL_t print_settings(upL_t line) const override;
    void menu_action(upL_t option) override;

 protected:
    void add_settings(Config::Object& object, bool for_display) const override;
    std::string summary_suffix() const override;
};

}  // namespace lumo
