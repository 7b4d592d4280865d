#include "lumo/foundation/parallel/dispatch/event.h"

#include <immintrin.h>

#include <chrono>

#include "lumo/foundation/parallel/dispatch/spin_wait.h"

namespace lumo {

Event::~Event() {
    spin_until([this] { return released.load(std::memory_order_acquire); });
}

void Event::signal() {
    _mm_sfence();  // streaming stores of the task must be visible before the event is
    signaled.store(true, std::memory_order_release);
    {
        std::lock_guard lock(mutex);
        condition.notify_all();
    }
    released.store(true, std::memory_order_release);
}

void Event::wait() {
    if (spin_briefly([this] { return is_signaled(); })) return;
    std::unique_lock lock(mutex);
    condition.wait(lock, [this] { return is_signaled(); });
}

bool Event::wait(std::uint64_t milliseconds) {
    if (is_signaled()) return true;
    // Beyond the cap a deadline would overflow the clock; nobody waits a century for a task.
    constexpr std::uint64_t LONGEST = std::uint64_t(1) << 41;
    const auto deadline = std::chrono::steady_clock::now() +
                          std::chrono::milliseconds(milliseconds < LONGEST ? milliseconds : LONGEST);
    std::unique_lock lock(mutex);
    return condition.wait_until(lock, deadline, [this] { return is_signaled(); });
}

}  // namespace lumo
