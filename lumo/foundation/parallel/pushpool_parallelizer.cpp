#include <algorithm>
#include <exception>

#include "lumo/foundation/parallel/dispatch/parallel_task.h"
#include "lumo/foundation/parallel/dispatch/run_beside.h"
#include "lumo/foundation/parallel/logical_cores.h"
#include "lumo/foundation/parallel/pushpool.h"

namespace lumo {

namespace {
upL_t initial_workers(upL_t worker_threads) {
    return (worker_threads == 0 ? 2 * logical_core_count() : worker_threads) - 1;
}
}  // namespace

PushPoolParallelizer::PushPoolParallelizer(upL_t worker_threads, bool randomize,
                                           upL_t max_sequential_dispatch)
    : limit(worker_threads == 0 ? 0 : worker_threads - 1),
      max_sequential(std::max(max_sequential_dispatch, SMALLEST_MAX_SEQUENTIAL_DISPATCH)),
      pool(initial_workers(worker_threads), randomize) {}

void PushPoolParallelizer::issue(BasicAction& task, upL_t index) {
    if (limit != 0) {
        if (!pool.try_push(task, index)) task.run(index);
        return;
    }
    try {
        pool.push_or_grow(task, index);
    } catch (const std::exception&) {
        // The system gives no more threads, or no memory for one: the caller is one. The task must not be
        // left behind, whose end its record waits for.
        task.run(index);
    }
}

void PushPoolParallelizer::run_in_parallel(BasicAction& a, BasicAction& b) {
    if (limit != 0) pool.ensure_workers(limit);
    run_pair<ParallelTask>(a, b, [this](auto& tasks, BasicAction& action, upL_t index) {
        issue(tasks.emplace_back(action), index);
    });
}

void PushPoolParallelizer::run_in_parallel(BasicAction& action, upL_t start, upL_t end) {
    run_indices<ParallelTask>(
        *this, action, start, end, max_sequential,
        [this](auto& tasks, BasicAction& work, upL_t index) { issue(tasks.emplace_back(work), index); });
}

std::unique_ptr<BasicParallelizer> make_pushpool(upL_t worker_threads, bool randomize,
                                                 upL_t max_sequential_dispatch) {
    return std::make_unique<PushPoolParallelizer>(worker_threads, randomize, max_sequential_dispatch);
}

BasicParallelizer& process_parallelizer() {
    // Never destroyed: a worker that ends the process must not wait for itself.
    static BasicParallelizer& pool = *make_pushpool().release();
    return pool;
}

}  // namespace lumo
