/// Memory straight from the system, committed before it is used.
#pragma once

#include "lumo/foundation/memory/allocators/page_policy.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

inline constexpr upL_t LARGE_PAGE_BYTES = 0x200000;
inline constexpr upL_t SMALL_PAGE_BYTES = 4096;

/// A mapping; null if the system refused. Nothing here owns it.
struct MappedRegion {
    void* pointer = nullptr;
    upL_t mapped_bytes = 0;
    bool large_pages = false;  ///< reserved large pages throughout
};

/// Maps `bytes` rounded up to whole pages, untouched: reserved large pages if they are wanted and there are
/// enough, else as map_joinable_pages() where they are wanted, else ordinary pages.
MappedRegion map_pages(upL_t bytes, bool want_large_pages);
/// Ordinary pages, untouched, that the kernel is advised to join to large ones. A region of 2 MiB or more
/// starts at a multiple of that.
MappedRegion map_joinable_pages(upL_t bytes);
/// Clears the region. A failure is told as a warning.
void unmap_pages(MappedRegion& region);

/// Writes the pattern that makes the kernel commit every page now: "{" first, "@" last, and a value of its
/// index in each 32-bit word between. `pointer` is aligned to 4.
void touch_pages(void* pointer, upL_t bytes, const ParallelContext& context);
/// The same for the part [from, to) of a region of `bytes`; all in bytes, `from` and inner ends multiples
/// of 4.
void touch_part(void* pointer, upL_t bytes, upL_t from, upL_t to);

/// Locks the region into memory; returns the bytes locked: all or none. Prints nothing: being refused is the
/// rule for ordinary users.
upL_t lock_pages(void* pointer, upL_t bytes);

}  // namespace lumo
