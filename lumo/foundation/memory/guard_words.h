/// Fixed words around blocks that tell of writes beyond their bounds.
#pragma once

#include <cstdint>
#include <cstring>

namespace lumo {

inline constexpr std::uint64_t ALIGNED_HEAD_GUARD = 0xea097be64bd0187d;
inline constexpr std::uint64_t ALIGNED_TAIL_GUARD = 0xc72bf73f0559cfe4;
inline constexpr std::uint64_t HEAP_BLOCK_GUARD = 0x5451234810025523;

/// The words need no alignment: the tail guard follows the last user byte.
inline std::uint64_t load_guard(const void* at) {
    std::uint64_t word;
    std::memcpy(&word, at, sizeof(word));
    return word;
}
inline void store_guard(void* at, std::uint64_t word) {
    std::memcpy(at, &word, sizeof(word));
}

}  // namespace lumo
