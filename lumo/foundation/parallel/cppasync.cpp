#include "lumo/foundation/parallel/cppasync.h"

#include <immintrin.h>

#include <algorithm>
#include <system_error>

#include "lumo/foundation/parallel/dispatch/run_beside.h"

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

struct StartTask {
    std::launch policy;
    void operator()(RecordArray<AsyncTask>& tasks, BasicAction& action, upL_t index) const {
        tasks.emplace_back(policy, action, index);
    }
};

}  // namespace

CppAsyncParallelizer::CppAsyncParallelizer(bool async_only, upL_t max_sequential_dispatch)
    : policy(async_only ? std::launch::async : std::launch::async | std::launch::deferred),
      max_sequential(std::max(max_sequential_dispatch, SMALLEST_MAX_SEQUENTIAL_DISPATCH)) {}

void CppAsyncParallelizer::run_in_parallel(BasicAction& a, BasicAction& b) {
    run_pair<AsyncTask>(a, b, StartTask{policy});
}

void CppAsyncParallelizer::run_in_parallel(BasicAction& action, upL_t start, upL_t end) {
    run_indices<AsyncTask>(*this, action, start, end, max_sequential, StartTask{policy});
}

}  // namespace lumo
