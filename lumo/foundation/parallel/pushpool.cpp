#include "lumo/foundation/parallel/pushpool.h"

#include <x86intrin.h>

#include <algorithm>
#include <bit>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/parallel/dispatch/spin_wait.h"
#include "lumo/foundation/parallel/logical_cores.h"

namespace lumo {

PushPool::PushPool(upL_t workers, bool randomize, StartFunction start)
    : randomized(randomize), start_function(std::move(start)), most_watching(logical_core_count() - 1) {
    ensure_workers(workers);
}

PushPool::~PushPool() {
    for (upL_t number = worker_count(); number-- > 0;) worker(number).stop_and_join();
}

PushPool::Worker& PushPool::worker(upL_t number) {
    const unsigned block = std::bit_width(number);
    return blocks[block][block == 0 ? 0 : number - (upL_t(1) << (block - 1))];
}

void PushPool::add_worker() {
    const upL_t number = count.load(std::memory_order_relaxed);
    const unsigned block = std::bit_width(number);
    require(block < MAX_BLOCKS, "Invalid Function Parameters:   ", "PushPool::add_worker()");
    if (!blocks[block]) blocks[block] = std::make_unique<Worker[]>(block == 0 ? 1 : upL_t(1) << (block - 1));
    Worker& added = worker(number);
    added.thread = std::thread([this, &added, number] {
        if (start_function) start_function(number);
        added.loop(*this);
    });
    const upL_t old_mask = mask.load(std::memory_order_relaxed);
    if (old_mask == number) mask.store(2 * old_mask + 1, std::memory_order_relaxed);
    count.store(number + 1, std::memory_order_release);
}

void PushPool::ensure_workers(upL_t workers) {
    if (worker_count() >= workers) return;
    std::lock_guard lock(growth_mutex);
    while (worker_count() < workers) add_worker();
}

bool PushPool::try_push_between(BasicAction& task, upL_t index, upL_t first, upL_t last) {
    for (upL_t number = first; number < last; number++)
        if (worker(number).try_claim(task, index)) return true;
    return false;
}

bool PushPool::try_push_to_watching(BasicAction& task, upL_t index, upL_t workers) {
    if (watching.load(std::memory_order_relaxed) == 0) return false;
    for (upL_t number = 0; number < workers; number++)
        if (worker(number).watching.load(std::memory_order_relaxed) && worker(number).try_claim(task, index))
            return true;
    return false;
}

bool PushPool::try_push(BasicAction& task, upL_t index) {
    const upL_t workers = worker_count();
    if (try_push_to_watching(task, index, workers)) return true;
    if (!randomized) return try_push_between(task, index, 0, workers);
    // A random starting point keeps senders from all contending for the low-numbered workers.
    upL_t from = __rdtsc() & mask.load(std::memory_order_relaxed);
    if (from >= workers) from -= workers;
    from = std::min(from, workers);
    return try_push_between(task, index, from, workers) || try_push_between(task, index, 0, from);
}

void PushPool::push_or_grow(BasicAction& task, upL_t index) {
    while (!try_push(task, index)) {
        std::lock_guard lock(growth_mutex);
        add_worker();
    }
}

bool PushPool::Worker::try_claim(BasicAction& work, upL_t work_index) {
    BasicAction* idle = nullptr;
    if (task.load(std::memory_order_relaxed) != nullptr ||
        !task.compare_exchange_strong(idle, &work, std::memory_order_acq_rel, std::memory_order_relaxed))
        return false;
    index = work_index;
    _mm_sfence();
    ready.store(true, std::memory_order_release);
    std::lock_guard lock(mutex);
    condition.notify_one();
    return true;
}

void PushPool::Worker::run_task(BasicAction& work) {
    spin_until([this] { return ready.load(std::memory_order_acquire); });
    try {
        work.run(index);
    } catch (...) {
        std::lock_guard lock(Console::lock());
        Console::print_error("PushPoolWorker: An exception was thrown from a task.");
        exit_with_pause(1);
    }
    // `ready` first: clearing `task` hands the record to the next sender.
    ready.store(false, std::memory_order_relaxed);
    task.store(nullptr, std::memory_order_release);
}

void PushPool::Worker::watch(PushPool& pool) {
    if (pool.watching.fetch_add(1, std::memory_order_relaxed) < pool.most_watching) {
        watching.store(true, std::memory_order_relaxed);
        spin_briefly([this] { return task.load(std::memory_order_relaxed) != nullptr; });
        watching.store(false, std::memory_order_relaxed);
    }
    pool.watching.fetch_sub(1, std::memory_order_relaxed);
}

void PushPool::Worker::loop(PushPool& pool) {
    for (;;) {
        if (task.load(std::memory_order_relaxed) == nullptr) watch(pool);
        if (BasicAction* work = task.load(std::memory_order_acquire)) {
            run_task(*work);
            continue;
        }
        std::unique_lock lock(mutex);
        if (stop) {
            lock.unlock();
            if (BasicAction* last = task.load(std::memory_order_acquire)) run_task(*last);
            return;
        }
        if (task.load(std::memory_order_relaxed) == nullptr) condition.wait(lock);
    }
}

void PushPool::Worker::stop_and_join() {
    {
        std::lock_guard lock(mutex);
        stop = true;
        condition.notify_one();
    }
    thread.join();
}

}  // namespace lumo
