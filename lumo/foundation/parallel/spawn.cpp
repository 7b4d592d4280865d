#include "lumo/foundation/parallel/spawn.h"

#include <algorithm>
#include <system_error>
#include <thread>

#include "lumo/foundation/parallel/dispatch/exception_holder.h"
#include "lumo/foundation/parallel/dispatch/fan_out.h"
#include "lumo/foundation/parallel/dispatch/record_array.h"
#include "lumo/foundation/parallel/thread_priority.h"

namespace lumo {

namespace {

/// A thread that runs one index of an action.
class SpawnedTask {
 public:
    SpawnedTask(BasicAction& action, upL_t index) {
        try {
            thread = std::thread([this, &action, index] {
                set_thread_priority(priority);
                run(action, index);
            });
        } catch (const std::system_error&) {
            run(action, index);  // the system gives no more threads: the caller is one
        }
    }
    ~SpawnedTask() { join(); }

    void join() {
        if (thread.joinable()) thread.join();
        holder.mark_checked();
    }
    void rethrow() { holder.rethrow(); }

 private:
    const int priority = 0;
    ExceptionHolder holder;
    std::thread thread;

    void run(BasicAction& action, upL_t index) {
        holder.run_guarded([&] { action.run(index); });
    }
};

}  // namespace

SpawnParallelizer::SpawnParallelizer(upL_t max_sequential_dispatch)
    : max_sequential(std::max(max_sequential_dispatch, SMALLEST_MAX_SEQUENTIAL_DISPATCH)) {}

void SpawnParallelizer::run_in_parallel(BasicAction& a, BasicAction& b) {
    SpawnedTask task(a, 0);
    ExceptionHolder own;
    own.run_guarded([&] { b.run(0); });
    own.mark_checked();
    task.join();
    task.rethrow();
    own.rethrow();
}

void SpawnParallelizer::run_in_parallel(BasicAction& action, upL_t start, upL_t end) {
    if (end <= start) return;
    const upL_t n = end - start;
    if (n == 1) return action.run(start);
    if (max_sequential < n) return run_with_fan_out(*this, action, start, end, max_sequential);

    RecordArray<SpawnedTask> tasks(n - 1);
    for (upL_t index = start; index < end - 1; index++) tasks.emplace_back(action, index);
    ExceptionHolder own;
    own.run_guarded([&] { action.run(end - 1); });
    own.mark_checked();
    for (SpawnedTask& task : tasks) task.join();
    for (SpawnedTask& task : tasks) task.rethrow();
    own.rethrow();
}

}  // namespace lumo
