/// Checked aligned blocks from the general allocator, for small and long-lived storage. Thread safe.
#pragma once

#include <memory>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// `size` bytes at a multiple of `alignment` (a power of two; below 8 becomes 8) between guard words.
/// Throws InvalidParametersException for other alignments, std::bad_alloc without memory.
void* aligned_malloc(upL_t size, upL_t alignment);
/// Frees a block of aligned_malloc(); ignores null. Throws AlgorithmFailedException when a guard word was
/// overwritten; the block is not freed then.
void aligned_free(void* pointer);

/// `size` bytes at a multiple of `alignment` (a power of two up to 128), unguarded; null without memory.
void* small_aligned_malloc(upL_t size, upL_t alignment);
/// Frees a block of small_aligned_malloc(); ignores null.
void small_aligned_free(void* pointer);

struct AlignedFree {
    void operator()(void* pointer) const { aligned_free(pointer); }
};
/// Owns a block of aligned_malloc(). A damaged guard found by its destructor ends the program.
template <typename T>
using AlignedPtr = std::unique_ptr<T[], AlignedFree>;

template <typename T>
AlignedPtr<T> make_aligned(upL_t count, upL_t alignment = ALIGNMENT_BYTES) {
    static_assert(std::is_trivially_copyable_v<T>);
    return AlignedPtr<T>(static_cast<T*>(aligned_malloc(count * sizeof(T), alignment)));
}

}  // namespace lumo
