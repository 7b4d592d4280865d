/// The `Parallelism` object of a computation.
#pragma once

#include "lumo/foundation/parallel/settings/framework_config.h"

namespace lumo {

inline constexpr upL_t MAX_TASK_DECOMPOSITION = 0x10000;

class Parallelism {
 public:
    /// For this machine: the logical cores, a task for each (two if their number is no power of two), and the
    /// push pool.
    Parallelism();
    explicit Parallelism(upL_t logical_cores);
    Parallelism(const Parallelism& other);
    Parallelism& operator=(const Parallelism& other);
    Parallelism(Parallelism&&) = default;
    Parallelism& operator=(Parallelism&&) = default;

    upL_t threads() const { return thread_count; }
    upL_t task_decomposition() const { return tds; }
    /// Throws InvalidParametersException outside 1 to 65536.
    void set_task_decomposition(upL_t tasks);
    const ParallelFrameworkConfig& framework() const { return *config; }
    ParallelFrameworkConfig& framework() { return *config; }
    void set_framework(std::unique_ptr<ParallelFrameworkConfig> chosen) { config = std::move(chosen); }

    /// Keys `TaskDecomposition` and `Framework`, with the framework's own beside them. Absent keys have the
    /// default values.
    static Parallelism from_cfg(const Config::Object& object);
    void to_cfg(Config::Object& object) const;
    void to_display_cfg(Config::Object& object) const;

    std::string summary_string() const { return config->summary_string(thread_count, tds); }
    void print_summary() const { config->print_summary(thread_count, tds); }
    /// Explains task decomposition and asks for it until the answer is valid.
    void ask_task_decomposition();

 private:
    upL_t thread_count;
    upL_t tds;
    std::unique_ptr<ParallelFrameworkConfig> config;
};

}  // namespace lumo
