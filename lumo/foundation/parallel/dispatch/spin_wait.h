/// Waiting for a store that another thread is about to make.
#pragma once

#include <immintrin.h>

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

}  // namespace lumo
