/// Dispatch by records that stand for one task each: the caller runs the last of them itself.
#pragma once

#include "lumo/foundation/parallel/dispatch/exception_holder.h"
#include "lumo/foundation/parallel/dispatch/fan_out.h"
#include "lumo/foundation/parallel/dispatch/record_array.h"

namespace lumo {

/// `start` puts up to `count` started tasks into the array; `own` runs here meanwhile. A Task has wait() and
/// rethrow(). The caller's exception is kept like the others', so that the one of the lowest index is the one
/// that is thrown.
template <typename Task, typename Start, typename Own>
void run_beside(upL_t count, const Start& start, const Own& own) {
    RecordArray<Task> tasks(count);
    start(tasks);
    ExceptionHolder holder;
    holder.run_guarded(own);
    holder.mark_checked();
    for (Task& task : tasks) task.wait();
    for (Task& task : tasks) task.rethrow();
    holder.rethrow();
}

/// Runs a beside b. `start(tasks, action, index)` starts a task.
template <typename Task, typename Start>
void run_pair(BasicAction& a, BasicAction& b, const Start& start) {
    run_beside<Task>(
        1, [&](RecordArray<Task>& tasks) { start(tasks, a, 0); }, [&] { b.run(0); });
}

/// Runs all indices, fanning out beyond `max_sequential` of them.
template <typename Task, typename Start>
void run_indices(BasicParallelizer& parallelizer, BasicAction& action, upL_t start, upL_t end,
                 upL_t max_sequential, const Start& start_task) {
    if (end <= start) return;
    const upL_t n = end - start;
    if (n == 1) return action.run(start);
    if (max_sequential < n) return run_with_fan_out(parallelizer, action, start, end, max_sequential);
    const auto start_all = [&](RecordArray<Task>& tasks) {
        for (upL_t index = start; index < end - 1; index++) start_task(tasks, action, index);
    };
    run_beside<Task>(n - 1, start_all, [&] { action.run(end - 1); });
}

}  // namespace lumo
