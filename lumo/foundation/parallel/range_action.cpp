#include <algorithm>

#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

namespace {

/// At most as many tasks as groups: one task a group, the threads spread so that the first `e` groups have
/// q of them and the rest q + 1.
class OneTaskGroups final : public BasicAction {
 public:
    OneTaskGroups(BasicRangeAction& a, upL_t first_task, upL_t tasks, upL_t first_thread, upL_t threads)
        : action(a), t0(first_task), p0(first_thread), q(threads / tasks), e((q + 1) * tasks - threads) {}
    void run(upL_t i) override {
        const upL_t count = i < e ? q : q + 1;
        const upL_t first = p0 + i * q + (i < e ? 0 : i - e);
        action.run_task(t0 + i, first, first + count);
    }

 private:
    BasicRangeAction& action;
    upL_t t0, p0, q, e;
};

/// More tasks than groups: tasks are shared in proportion to the threads of each group.
class ManyTaskGroups final : public BasicAction {
 public:
    ManyTaskGroups(BasicRangeAction& a, upL_t first_task, upL_t tasks, upL_t first_thread, upL_t threads,
                   upL_t groups)
        : action(a),
          t0(first_task),
          p0(first_thread),
          group_threads(threads / groups),
          extra_threads(threads % groups),
          q(tasks / threads),
          group_tasks(tasks % threads / groups),
          extra_tasks(tasks % threads % groups) {}
    void run(upL_t i) override {
        const upL_t threads = group_threads + (i < extra_threads);
        const upL_t offset = i * group_threads + std::min(i, extra_threads);
        const upL_t task = t0 + group_tasks * i + std::min(extra_tasks, i) + offset * q;
        const upL_t task_end = task + q * threads + group_tasks + (i < extra_tasks);
        const upL_t thread = p0 + offset;
        if (threads == 1)
            action.run(task, task_end, thread);
        else
            action.run_range(task, task_end, thread, thread + threads);
    }

 private:
    BasicRangeAction& action;
    upL_t t0, p0, group_threads, extra_threads, q, group_tasks, extra_tasks;
};

}  // namespace

void BasicParallelizer::run_in_parallel(BasicRangeAction& action, upL_t t0, upL_t t1, upL_t p0, upL_t p1,
                                        upL_t group) {
    group = std::max<upL_t>(group, 1);
    require(p0 <= p1 && group <= p1 - p0,
            "Invalid Function Parameters:   ", "BasicParallelizer::run_in_parallel()");
    if (t1 <= t0) return;
    const upL_t tasks = t1 - t0;
    const upL_t threads = p1 - p0;
    if (tasks == 1) {
        action.run_task(t0, p0, p1);
        return;
    }
    if (group > threads / 2) {  // no room for two groups
        if (threads == 1)
            action.run(t0, t1, p0);
        else
            action.run_range(t0, t1, p0, p1);
        return;
    }
    const upL_t groups = threads / group;
    if (tasks <= groups) {
        OneTaskGroups dispatch(action, t0, tasks, p0, threads);
        run_in_parallel(dispatch, 0, tasks);
    } else {
        ManyTaskGroups dispatch(action, t0, tasks, p0, threads, groups);
        run_in_parallel(dispatch, 0, groups);
    }
}

}  // namespace lumo
