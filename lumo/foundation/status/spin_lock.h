/// A lock of one byte for sections of a few instructions. Meets the standard's BasicLockable.
#pragma once

#include <atomic>
#include <cstdint>

namespace lumo {

class SpinLock {
 public:
    void lock() noexcept {
        std::uint8_t open = 0;
        while (!state.compare_exchange_weak(open, 1, std::memory_order_acquire, std::memory_order_relaxed)) {
            open = 0;
            // Waits on a plain load, so that waiting processors do not take the line from each other.
            while (state.load(std::memory_order_relaxed) != 0) __builtin_ia32_pause();
        }
    }
    void unlock() noexcept { state.store(0, std::memory_order_release); }

 private:
    std::atomic<std::uint8_t> state{0};
};

}  // namespace lumo
