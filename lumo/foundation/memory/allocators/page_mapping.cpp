#include "lumo/foundation/memory/allocators/page_mapping.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "lumo/foundation/console/console.h"

namespace lumo {

namespace {

constexpr int ORDINARY = MAP_PRIVATE | MAP_ANONYMOUS;

void* map(upL_t bytes, int flags) {
    void* pointer = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, flags, -1, 0);
    return pointer == MAP_FAILED ? nullptr : pointer;
}

MappedRegion map_ordinary(upL_t bytes) {
    const upL_t rounded = round_up(bytes, SMALL_PAGE_BYTES);
    if (bytes == 0 || rounded < bytes) return {};
    void* pointer = map(rounded, ORDINARY);
    return pointer == nullptr ? MappedRegion() : MappedRegion{pointer, rounded};
}

}  // namespace

MappedRegion map_joinable_pages(upL_t bytes) {
    if (bytes < LARGE_PAGE_BYTES) return map_ordinary(bytes);
    // More is mapped than needed, and what stands over at both ends is given back.
    const upL_t rounded = round_up(bytes, SMALL_PAGE_BYTES);
    const upL_t generous = rounded + LARGE_PAGE_BYTES;
    if (rounded < bytes || generous < rounded) return {};
    char* raw = static_cast<char*>(map(generous, ORDINARY));
    if (raw == nullptr) return map_ordinary(bytes);
    const upL_t front = -reinterpret_cast<std::uintptr_t>(raw) & (LARGE_PAGE_BYTES - 1);
    if (front > 0) munmap(raw, front);
    munmap(raw + front + rounded, LARGE_PAGE_BYTES - front);
    madvise(raw + front, rounded, MADV_HUGEPAGE);  // only advice: nothing is lost when it is not taken
    return {raw + front, rounded};
}

MappedRegion map_pages(upL_t bytes, bool want_large_pages) {
    if (!want_large_pages) return map_ordinary(bytes);
    const upL_t rounded = round_up(bytes, LARGE_PAGE_BYTES);
    if (bytes > 0 && rounded >= bytes)
        if (void* pointer = map(rounded, ORDINARY | MAP_HUGETLB)) return {pointer, rounded, true};
    return map_joinable_pages(bytes);
}

void unmap_pages(MappedRegion& region) {
    if (region.pointer == nullptr) return;
    if (munmap(region.pointer, region.mapped_bytes) != 0)
        Console::print_error("Unable to free memory: munmap() - errno = " + std::to_string(errno));
    region = {};
}

void touch_part(void* pointer, upL_t bytes, upL_t from, upL_t to) {
    char* const start = static_cast<char*>(pointer);
    const upL_t first_word = std::max<upL_t>(from / 4, 1);
    const upL_t last_word = std::min(to, (bytes - 1) & ~upL_t(3)) / 4;
    for (upL_t i = first_word; i < last_word; i++) {
        const auto index = static_cast<std::uint32_t>(i);
        const std::uint32_t word = index * index * 0xc82b9175u - 933796325u;
        std::memcpy(start + 4 * i, &word, sizeof(word));
    }
    if (from == 0 && to > 0) start[0] = '{';
    if (to == bytes && bytes > 0) start[bytes - 1] = '@';
}

void touch_pages(void* pointer, upL_t bytes, const ParallelContext& context) {
    constexpr upL_t SMALLEST_PART = upL_t(1) << 20;
    if (bytes == 0) return;
    const upL_t parts = std::clamp<upL_t>(bytes / SMALLEST_PART, 1, std::max<upL_t>(context.tds, 1));
    const upL_t part = round_up(bytes / parts + 1, SMALL_PAGE_BYTES);
    parallel_for(*context.parallelizer, 0, parts, [&](upL_t i) {
        const upL_t from = std::min(i * part, bytes);
        const upL_t to = std::min(from + part, bytes);
        if (from < to) touch_part(pointer, bytes, from, to);
    });
}

upL_t lock_pages(void* pointer, upL_t bytes) {
    return mlock(pointer, bytes) == 0 ? bytes : 0;
}

}  // namespace lumo
