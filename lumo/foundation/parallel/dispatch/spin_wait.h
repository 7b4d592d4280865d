/// Waiting for a store that another thread is about to make.
#pragma once

#include <x86intrin.h>

#include <cstdint>
#include <thread>

namespace lumo {

/// Spins with the pause instruction. Yields once the other thread seems to have lost its core, so that more
/// threads than cores cost no time slices.
template <typename Condition>
void spin_until(Condition&& condition) {
    constexpr int SPINS_BEFORE_YIELD = 256;
    for (int spins = 0; !condition(); spins++) {
        if (spins < SPINS_BEFORE_YIELD)
            _mm_pause();
        else
            std::this_thread::yield();
    }
}

/// Spins for as long as waking a sleeping thread costs, some 50 microseconds; returns whether the condition
/// came true. Whoever waits for a short stretch of parallel work so keeps clear of the kernel.
template <typename Condition>
bool spin_briefly(Condition&& condition) {
    constexpr std::uint64_t TICKS = std::uint64_t(1) << 17;  // of the time stamp counter
    const std::uint64_t start = __rdtsc();
    while (!condition()) {
        if (__rdtsc() - start > TICKS) return false;
        _mm_pause();
    }
    return true;
}

}  // namespace lumo
