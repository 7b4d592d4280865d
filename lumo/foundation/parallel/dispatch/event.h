/// A one-shot waitable object.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace lumo {

/// Signaled once by one thread. An event must be signaled before it is destroyed; the destructor waits until
/// the signaler has left the object.
class Event {
 public:
    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event();

    void signal();
    bool is_signaled() const { return signaled.load(std::memory_order_acquire); }
    void wait();
    /// Waits on the monotonic clock for at most the given time; returns whether the event was signaled.
    bool wait(std::uint64_t milliseconds);

 private:
    std::mutex mutex;
    std::condition_variable condition;
    std::atomic<bool> signaled{false};
    std::atomic<bool> released{false};
};

}  // namespace lumo
