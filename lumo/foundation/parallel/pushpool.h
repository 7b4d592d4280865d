/// The framework "pushpool": idle workers sleep, a dispatcher pushes a task straight into one of them. Those
/// that fell idle a moment ago watch for more before they sleep, one less than there are cores, and are asked
/// first.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/foundation/parallel/dispatch/fan_out.h"

namespace lumo {

/// A pool of threads that grows and never shrinks.
///
/// Pushing takes no lock of the pool: the only shared write is the compare-and-swap that claims one worker.
class PushPool {
 public:
    /// Called by each new thread with its worker number, before it takes work.
    using StartFunction = std::function<void(upL_t worker)>;

    explicit PushPool(upL_t workers = 0, bool randomize = true, StartFunction start = {});
    PushPool(const PushPool&) = delete;
    PushPool& operator=(const PushPool&) = delete;
    /// Joins all threads. Tasks that were pushed are run first.
    ~PushPool();

    /// Hands the task to an idle worker; false if there is none. The task stays the caller's and must live
    /// until it has run. It should let no exception out: one that escapes ends the program.
    bool try_push(BasicAction& task, upL_t index);
    /// Adds workers until one takes the task. Throws std::system_error when the system gives no more threads.
    void push_or_grow(BasicAction& task, upL_t index);
    /// Grows the pool to at least this many workers.
    void ensure_workers(upL_t workers);
    upL_t worker_count() const { return count.load(std::memory_order_acquire); }

 private:
    /// Aligned so that the hot words of two workers share no cache line.
    struct alignas(128) Worker {
        std::atomic<BasicAction*> task{nullptr};
        upL_t index = 0;
        std::atomic<bool> ready{false};     ///< `index` belongs to `task`
        std::atomic<bool> watching{false};  ///< takes a task without being woken
        bool stop = false;                  ///< guarded by the mutex
        std::mutex mutex;
        std::condition_variable condition;
        std::thread thread;

        bool try_claim(BasicAction& work, upL_t work_index);
        void loop(PushPool& pool);
        void watch(PushPool& pool);
        void run_task(BasicAction& work);
        void stop_and_join();
    };
    /// Block 0 holds worker 0, block k holds workers 2^(k-1) to 2^k - 1: adding never moves a worker.
    static constexpr upL_t MAX_BLOCKS = 64;

    Worker& worker(upL_t number);
    bool try_push_between(BasicAction& task, upL_t index, upL_t first, upL_t last);
    bool try_push_to_watching(BasicAction& task, upL_t index, upL_t workers);
    void add_worker();  ///< under growth_mutex

    const bool randomized;
    const StartFunction start_function;
    std::atomic<upL_t> count{0};
    std::atomic<upL_t> mask{0};  ///< 2^k - 1, at least `count`
    const upL_t most_watching;
    alignas(128) std::atomic<upL_t> watching{0};
    std::mutex growth_mutex;
    std::unique_ptr<Worker[]> blocks[MAX_BLOCKS];
};

/// Dispatch over a pool of its own.
class PushPoolParallelizer final : public BasicParallelizer {
 public:
    /// `worker_threads` counts the caller: with 0 the pool starts with twice the logical cores less one and
    /// grows as needed; with 1 it starts empty and grows as needed; otherwise it keeps worker_threads - 1
    /// threads, and the caller runs what they cannot take.
    PushPoolParallelizer(upL_t worker_threads, bool randomize, upL_t max_sequential_dispatch);
    using BasicParallelizer::run_in_parallel;
    void run_in_parallel(BasicAction& a, BasicAction& b) override;
    void run_in_parallel(BasicAction& action, upL_t start, upL_t end) override;
    const PushPool& workers() const { return pool; }

 private:
    const upL_t limit;  ///< of threads; 0 is none
    const upL_t max_sequential;
    PushPool pool;

    void issue(BasicAction& task, upL_t index);
};

std::unique_ptr<BasicParallelizer> make_pushpool(
    upL_t worker_threads = 0, bool randomize = true,
    upL_t max_sequential_dispatch = DEFAULT_MAX_SEQUENTIAL_DISPATCH);

/// The pool with default settings for code outside a computation, created by the first call.
BasicParallelizer& process_parallelizer();

}  // namespace lumo
