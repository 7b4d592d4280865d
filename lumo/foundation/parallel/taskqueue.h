/// The framework "taskqueue": one ordered queue from which all threads draw.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

class ParallelTask;

/// IDs order the queue: the smallest runs first. Dispatched work goes to the front, so the newest and
/// innermost runs first and a tree of nested tasks is walked depth-first; background work goes to the back.
class TaskQueue final : public BasicParallelizer {
 public:
    /// 0 is no limit. No thread starts before there is work.
    explicit TaskQueue(upL_t worker_threads);
    /// Closes the queue, lets the threads empty it and joins them.
    ~TaskQueue() override;

    using BasicParallelizer::run_in_parallel;
    /// Both throw InvalidParametersException "Queue is closed." on a closed queue.
    void run_in_parallel(BasicAction& a, BasicAction& b) override;
    void run_in_parallel(BasicAction& action, upL_t start, upL_t end) override;

    /// Owned background work, run once with index 0 and destroyed, also when the queue ends first. It must
    /// let no exception out: one that escapes ends the program. Throws InvalidParametersException on a closed
    /// queue.
    void push_back(std::unique_ptr<BasicAction> action);
    /// Refuses new work from now on; what is queued still runs.
    void close();
    upL_t thread_count();

 private:
    using Id = std::int64_t;
    struct Entry {
        BasicAction* action;
        upL_t index;
    };

    const upL_t limit;
    std::mutex mutex;
    std::condition_variable condition;
    // All guarded by the mutex, which is never held while a task runs.
    std::map<Id, Entry> entries;
    std::unordered_map<BasicAction*, std::unique_ptr<BasicAction>> owners;
    std::vector<std::thread> threads;
    upL_t idle = 0;
    bool closed = false;

    void require_open(const char* location) const;
    Id reserve_front(upL_t count) const;
    void wake_one();
    void wake_many(upL_t tasks);
    void start_threads(upL_t count);
    void worker_loop();
    void reclaim(Id id, ParallelTask& task);
};

}  // namespace lumo
