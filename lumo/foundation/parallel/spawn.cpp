#include "lumo/foundation/parallel/spawn.h"

#include <algorithm>
#include <system_error>
#include <thread>

#include "lumo/foundation/parallel/dispatch/run_beside.h"
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
    ~SpawnedTask() { wait(); }

    void wait() {
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

void start_task(RecordArray<SpawnedTask>& tasks, BasicAction& action, upL_t index) {
    tasks.emplace_back(action, index);
}

}  // namespace

SpawnParallelizer::SpawnParallelizer(upL_t max_sequential_dispatch)
    : max_sequential(std::max(max_sequential_dispatch, SMALLEST_MAX_SEQUENTIAL_DISPATCH)) {}

void SpawnParallelizer::run_in_parallel(BasicAction& a, BasicAction& b) {
    run_pair<SpawnedTask>(a, b, start_task);
}

void SpawnParallelizer::run_in_parallel(BasicAction& action, upL_t start, upL_t end) {
    run_indices<SpawnedTask>(*this, action, start, end, max_sequential, start_task);
}

}  // namespace lumo
