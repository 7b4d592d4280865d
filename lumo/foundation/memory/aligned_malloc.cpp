#include "lumo/foundation/memory/aligned_malloc.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/memory/guard_words.h"

namespace lumo {

namespace {

constexpr upL_t SMALLEST_ALIGNMENT = 8;
constexpr upL_t HEADER_BYTES = 24;  // raw pointer, size, head guard

constexpr bool is_power_of_two_or_zero(upL_t n) {
    return (n & (n - 1)) == 0;
}

char* align_above(char* raw, upL_t offset, upL_t alignment) {
    const auto at = reinterpret_cast<std::uintptr_t>(raw) + offset;
    return raw + (((at & ~(alignment - 1)) + alignment) - reinterpret_cast<std::uintptr_t>(raw));
}

}  // namespace

void* aligned_malloc(upL_t size, upL_t alignment) {
    if (!is_power_of_two_or_zero(alignment))
        throw InvalidParametersException("aligned_malloc()", "Alignment must be a power of two.");
    alignment = std::max(alignment, SMALLEST_ALIGNMENT);
    const upL_t total = size + alignment + HEADER_BYTES + 8;
    if (total < size) throw std::bad_alloc();
    char* raw = static_cast<char*>(std::malloc(total));
    if (raw == nullptr) throw std::bad_alloc();
    char* user = align_above(raw, HEADER_BYTES, alignment);
    store_guard(user - 24, reinterpret_cast<std::uintptr_t>(raw));
    store_guard(user - 16, size);
    store_guard(user - 8, ALIGNED_HEAD_GUARD);
    store_guard(user + size, ALIGNED_TAIL_GUARD);
    return user;
}

void aligned_free(void* pointer) {
    if (pointer == nullptr) return;
    char* user = static_cast<char*>(pointer);
    if (load_guard(user - 8) != ALIGNED_HEAD_GUARD)
        throw AlgorithmFailedException("aligned_free()", "Memory buffer has been underrun.");
    if (load_guard(user + load_guard(user - 16)) != ALIGNED_TAIL_GUARD)
        throw AlgorithmFailedException("aligned_free()", "Memory buffer has been overrun.");
    std::free(reinterpret_cast<void*>(load_guard(user - 24)));
}

void* small_aligned_malloc(upL_t size, upL_t alignment) {
    require(alignment <= 128 && is_power_of_two_or_zero(alignment),
            "Invalid Function Parameters:   ", "small_aligned_malloc()");
    alignment = std::max(alignment, SMALLEST_ALIGNMENT);
    const upL_t total = alignment + size + 8;
    if (total < size) return nullptr;
    char* raw = static_cast<char*>(std::malloc(total));
    if (raw == nullptr) return nullptr;
    char* user = align_above(raw, 8, alignment);
    store_guard(user - 8, reinterpret_cast<std::uintptr_t>(raw));
    return user;
}

void small_aligned_free(void* pointer) {
    if (pointer != nullptr) std::free(reinterpret_cast<void*>(load_guard(static_cast<char*>(pointer) - 8)));
}

}  // namespace lumo
