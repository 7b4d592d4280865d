/// What a dispatcher hands to a worker.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/foundation/parallel/dispatch/event.h"
#include "lumo/foundation/parallel/dispatch/exception_holder.h"

namespace lumo {

/// One index of an action, with the way back for its exception and the event that tells of its end. Once
/// constructed it must be run exactly once, by whichever thread.
class ParallelTask final : public BasicAction {
 public:
    explicit ParallelTask(BasicAction& work) : action(work) {}
    /// Waits for the task, so that unwinding out of a dispatch leaves no worker on a dead stack frame.
    ~ParallelTask() override { event.wait(); }

    void run(upL_t index) override {
        holder.run_guarded([&] { action.run(index); });
        event.signal();
    }
    void wait() {
        event.wait();
        holder.mark_checked();
    }
    void rethrow() { holder.rethrow(); }

 private:
    ExceptionHolder holder;
    BasicAction& action;
    Event event;
};

}  // namespace lumo
