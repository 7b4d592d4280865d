#include "lumo/foundation/memory/large_buffer.h"

#include "lumo/foundation/console/console.h"

namespace lumo {

namespace {
constexpr upL_t ADDRESS_SPACE_BYTES = upL_t(1) << 47;
}

LargeBuffer::LargeBuffer(const BufferAllocator& source, upL_t bytes, const ParallelContext& context)
    : allocator(source.clone()) {
    if (bytes == 0) return;
    if (bytes >= ADDRESS_SPACE_BYTES) block.error = "Insufficient Address Space";
    if (block.error.empty()) block = allocator->allocate(bytes, context);
    if (block.pointer == nullptr)
        throw MemoryAllocationFailedException("LargeBuffer()", block.error, allocator->display_name(), bytes);
}

LargeBuffer::LargeBuffer(LargeBuffer&& other) noexcept
    : allocator(std::move(other.allocator)), block(std::exchange(other.block, {})) {}

LargeBuffer& LargeBuffer::operator=(LargeBuffer&& other) noexcept {
    if (this == &other) return *this;
    reset();
    allocator = std::move(other.allocator);
    block = std::exchange(other.block, {});
    return *this;
}

void LargeBuffer::reset() {
    if (block.pointer != nullptr) allocator->release(block);
}

LargeHeap::LargeHeap(const BufferAllocator& allocator, upL_t bytes, const ParallelContext& context)
    : buffer(allocator, bytes, context), inner(buffer.buffer().data(), buffer.size()) {}

std::unique_ptr<LargeHeap> make_large_heap(const BufferAllocator& allocator, upL_t bytes,
                                           const ParallelContext& context) {
    try {
        auto heap = std::make_unique<LargeHeap>(allocator, bytes, context);
        if (bytes > 0) Console::print_line(heap->pages().describe());
        return heap;
    } catch (const MemoryAllocationFailedException& failure) {
        std::lock_guard lock(Console::lock());
        Console::print_error("Large heap allocation failed.");
        Console::print_error(failure.message);
        Console::print_label_line("Failed Allocation", Console::format_bytes(bytes));
        exit_with_pause(1);
    }
}

}  // namespace lumo
