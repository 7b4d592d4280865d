#include "lumo/foundation/parallel/taskqueue.h"

#include <algorithm>
#include <limits>
#include <system_error>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/parallel/dispatch/parallel_task.h"
#include "lumo/foundation/parallel/dispatch/record_array.h"

namespace lumo {

TaskQueue::TaskQueue(upL_t worker_threads)
    : limit(worker_threads == 0 ? std::numeric_limits<upL_t>::max() : worker_threads) {}

TaskQueue::~TaskQueue() {
    close();
    for (std::thread& thread : threads) thread.join();
}

void TaskQueue::close() {
    std::lock_guard lock(mutex);
    closed = true;
    condition.notify_all();
}

upL_t TaskQueue::thread_count() {
    std::lock_guard lock(mutex);
    return threads.size();
}

void TaskQueue::require_open(const char* location) const {
    if (closed) throw InvalidParametersException(location, "Queue is closed.");
}

TaskQueue::Id TaskQueue::reserve_front(upL_t count) const {
    constexpr Id LOWEST = std::numeric_limits<Id>::min();
    const Id smallest = entries.empty() ? 1 : entries.begin()->first;
    const upL_t room = upL_t(smallest) - upL_t(LOWEST);
    if (count > room)
        throw LimitExceededException("TaskQueue::dispatch()", "ID limit exceeded.", room, count);
    return Id(upL_t(smallest) - count);
}

void TaskQueue::start_threads(upL_t count) {
    try {
        for (; count > 0; count--) threads.emplace_back([this] { worker_loop(); });
    } catch (const std::system_error&) {
        // The system gives no more threads: dispatchers take back what nobody runs.
    }
}

void TaskQueue::wake_one() {
    if (idle > 0)
        condition.notify_one();
    else if (threads.size() < limit)
        start_threads(1);
}

void TaskQueue::wake_many(upL_t tasks) {
    const upL_t wake = std::min(idle, tasks);
    for (upL_t i = 0; i < wake; i++) condition.notify_one();
    const upL_t target = std::min(limit + wake - threads.size(), tasks);
    if (target > wake) start_threads(target - wake);
}

void TaskQueue::push_back(std::unique_ptr<BasicAction> action) {
    std::lock_guard lock(mutex);
    require_open("TaskQueue::push_back()");
    Id id = 0;
    if (!entries.empty()) {
        const Id largest = entries.rbegin()->first;
        if (largest == std::numeric_limits<Id>::max())
            throw LimitExceededException("TaskQueue::dispatch()", "ID limit exceeded.", upL_t(largest),
                                         upL_t(largest) + 1);
        id = largest + 1;
    }
    BasicAction* key = action.get();
    owners.emplace(key, std::move(action));
    entries.emplace(id, Entry{key, 0});
    wake_one();
    if (threads.empty()) {
        entries.erase(id);
        owners.erase(key);
        throw ResourceAcquisitionFailedException("TaskQueue::push_back()", "Unable to start a thread.");
    }
}

void TaskQueue::worker_loop() {
    std::unique_lock lock(mutex);
    for (;;) {
        if (entries.empty()) {
            if (closed) return;
            idle++;
            condition.wait(lock);
            idle--;
            continue;
        }
        const auto first = entries.begin();
        const Entry entry = first->second;
        entries.erase(first);
        std::unique_ptr<BasicAction> owner;
        if (const auto found = owners.find(entry.action); found != owners.end()) {
            owner = std::move(found->second);
            owners.erase(found);
        }
        lock.unlock();
        try {
            entry.action->run(entry.index);
        } catch (...) {
            std::lock_guard console(Console::lock());
            Console::print_error("TaskQueueWorker: An exception was thrown from a task.");
            exit_with_pause(1);
        }
        owner.reset();
        lock.lock();
    }
}

void TaskQueue::reclaim(Id id, ParallelTask& task) {
    std::unique_lock lock(mutex);
    const auto found = entries.find(id);
    if (found == entries.end() || found->second.action != &task) return;
    const upL_t index = found->second.index;
    entries.erase(found);
    lock.unlock();
    task.run(index);
}

void TaskQueue::run_in_parallel(BasicAction& a, BasicAction& b) {
    std::unique_lock lock(mutex);
    require_open("TaskQueue::push_back()");
    const Id id = reserve_front(1);
    // The entry first: once it exists, the task must be run.
    BasicAction*& entry = entries.emplace(id, Entry{nullptr, 0}).first->second.action;
    ParallelTask task(a);
    entry = &task;
    wake_one();
    lock.unlock();

    ExceptionHolder own;
    own.run_guarded([&] { b.run(0); });
    own.mark_checked();
    reclaim(id, task);
    task.wait();
    task.rethrow();
    own.rethrow();
}

void TaskQueue::run_in_parallel(BasicAction& action, upL_t start, upL_t end) {
    if (end <= start) return;
    if (end - start == 1) return action.run(start);
    const upL_t queued = end - start - 1;
    RecordArray<ParallelTask> tasks(queued);

    std::unique_lock lock(mutex);
    require_open("TaskQueue::push_back()");
    const Id first_id = reserve_front(queued);
    const auto old_front = entries.begin();
    for (upL_t i = 0; i < queued; i++)
        entries.emplace_hint(old_front, first_id + Id(i), Entry{&tasks.emplace_back(action), start + 1 + i});
    wake_many(queued);
    lock.unlock();

    ExceptionHolder own;
    own.run_guarded([&] { action.run(start); });
    own.mark_checked();
    Id id = first_id;
    for (ParallelTask& task : tasks) reclaim(id++, task);
    for (ParallelTask& task : tasks) task.wait();
    own.rethrow();
    for (ParallelTask& task : tasks) task.rethrow();
}

}  // namespace lumo
