#include "lumo/foundation/parallel/cppasync.h"

#include <immintrin.h>

#include <algorithm>
#include <system_error>

#include "lumo/foundation/parallel/dispatch/exception_holder.h"
#include "lumo/foundation/parallel/dispatch/fan_out.h"
#include "lumo/foundation/parallel/dispatch/record_array.h"

namespace lumo {

namespace {

/// One index of an action as an asynchronous task. The store fences publish streaming stores of one thread
/// to the other.
class AsyncTask {
 public:
    AsyncTask(std::launch policy, BasicAction& action, upL_t index) {
        _mm_sfence();
        try {
            future = std::async(policy, [this, &action, index] { run(action, index); });
        } catch (const std::system_error&) {
            run(action, index);  // the system gives no more threads: the caller is one
        }
    }
    ~AsyncTask() { wait(); }

    void wait() {
        if (future.valid()) future.get();
        holder.mark_checked();
    }
    void rethrow() { holder.rethrow(); }

 private:
    ExceptionHolder holder;
    std::future<void> future;

    void run(BasicAction& action, upL_t index) {
        holder.run_guarded([&] { action.run(index); });
        _mm_sfence();
    }
};

}  // namespace

CppAsyncParallelizer::CppAsyncParallelizer(bool async_only, upL_t max_sequential_dispatch)
    : policy(async_only ? std::launch::async : std::launch::async | std::launch::deferred),
      max_sequential(std::max(max_sequential_dispatch, SMALLEST_MAX_SEQUENTIAL_DISPATCH)) {}

void CppAsyncParallelizer::run_in_parallel(BasicAction& a, BasicAction& b) {
    AsyncTask task(policy, a, 0);
    ExceptionHolder own;
    own.run_guarded([&] { b.run(0); });
    own.mark_checked();
    task.wait();
    task.rethrow();
    own.rethrow();
}

void CppAsyncParallelizer::run_in_parallel(BasicAction& action, upL_t start, upL_t end) {
    if (end <= start) return;
    const upL_t n = end - start;
    if (n == 1) return action.run(start);
    if (max_sequential < n) return run_with_fan_out(*this, action, start, end, max_sequential);

    RecordArray<AsyncTask> tasks(n - 1);
    for (upL_t index = start; index < end - 1; index++) tasks.emplace_back(policy, action, index);
    ExceptionHolder own;
    own.run_guarded([&] { action.run(end - 1); });
    own.mark_checked();
    for (AsyncTask& task : tasks) task.wait();
    for (AsyncTask& task : tasks) task.rethrow();
    own.rethrow();
}

}  // namespace lumo
