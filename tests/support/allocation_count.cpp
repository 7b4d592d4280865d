#include "allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t LARGE_BYTES = 1024;
std::atomic<std::size_t> count{0};
std::atomic<std::size_t> large_count{0};

void* allocate(std::size_t bytes, std::size_t alignment) {
    count++;
    if (bytes > LARGE_BYTES) large_count++;
    const std::size_t unit = alignment < 16 ? 16 : alignment;
    void* block = std::aligned_alloc(unit, (bytes + unit) / unit * unit);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

}  // namespace

namespace lumo::testing {

std::size_t allocation_count() {
    return count;
}

std::size_t large_allocation_count() {
    return large_count;
}

}  // namespace lumo::testing

void* operator new(std::size_t bytes) {
    return allocate(bytes, 16);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
    return allocate(bytes, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}
