/// The one interface behind which all threading happens. Dispatch nests to any depth, and the caller always
/// takes part in the work it dispatches.
#pragma once

#include <utility>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// The unit of dispatch. Owned by the caller, alive until the dispatching call returns; one object is run
/// concurrently with different indices.
class BasicAction {
 public:
    virtual ~BasicAction() = default;
    virtual void run(upL_t index) = 0;
};

/// Work that has both tasks and threads to share.
class BasicRangeAction {
 public:
    virtual ~BasicRangeAction() = default;
    virtual void run(upL_t task_start, upL_t task_end, upL_t thread) = 0;
    virtual void run_task(upL_t task, upL_t thread_start, upL_t thread_end) = 0;
    virtual void run_range(upL_t task_start, upL_t task_end, upL_t thread_start, upL_t thread_end) = 0;
};

class BasicParallelizer {
 public:
    virtual ~BasicParallelizer() = default;
    /// Two different actions, each run with index 0. Returns when both have ended; rethrows a task's
    /// exception.
    virtual void run_in_parallel(BasicAction& a, BasicAction& b) = 0;
    /// One action over [start, end): every index exactly once. Nothing when end <= start; a single index runs
    /// on the caller with no task object.
    virtual void run_in_parallel(BasicAction& action, upL_t start, upL_t end) = 0;
    /// Shares tasks [t0, t1) among threads [p0, p1), at least `group` threads a group.
    void run_in_parallel(BasicRangeAction& action, upL_t t0, upL_t t1, upL_t p0, upL_t p1, upL_t group);
};

/// Wraps a callable as an action, without allocation.
template <typename F>
class LambdaAction final : public BasicAction {
 public:
    explicit LambdaAction(F f) : function(std::forward<F>(f)) {}
    void run(upL_t index) override { function(index); }

 private:
    F function;
};

template <typename F>
void parallel_for(BasicParallelizer& parallelizer, upL_t start, upL_t end, F&& f) {
    LambdaAction<F&> action(f);
    parallelizer.run_in_parallel(action, start, end);
}

template <typename F, typename G>
void parallel_invoke(BasicParallelizer& parallelizer, F&& f, G&& g) {
    auto run_f = [&f](upL_t) { f(); };
    auto run_g = [&g](upL_t) { g(); };
    LambdaAction<decltype(run_f)&> a(run_f);
    LambdaAction<decltype(run_g)&> b(run_g);
    parallelizer.run_in_parallel(a, b);
}

/// Runs everything on the caller, in ascending order: the framework "none".
BasicParallelizer& serial_parallelizer();

/// How far an operation may be cut, and who runs the pieces. (1, any) means: in the caller's thread.
struct ParallelContext {
    upL_t tds = 1;
    BasicParallelizer* parallelizer = &serial_parallelizer();
    /// Who runs pieces whose number does not come from tds.
    BasicParallelizer& runner() const { return tds > 1 ? *parallelizer : serial_parallelizer(); }
};

/// f(i) for all i below `count`, which may be many: no more tasks than tds, each of which takes every so
/// many-th.
template <typename F>
void parallel_stride(const ParallelContext& ctx, upL_t count, F&& f) {
    const upL_t most = ctx.tds > 1 ? ctx.tds : 1, tasks = count < most ? count : most;
    parallel_for(ctx.runner(), 0, tasks, [&](upL_t task) {
        for (upL_t i = task; i < count; i += tasks) f(i);
    });
}

}  // namespace lumo
