#include "lumo/foundation/memory/allocators/allocator_registry.h"

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/memory/allocators/interleave_allocator.h"
#include "lumo/foundation/memory/allocators/malloc_allocator.h"
#include "lumo/foundation/memory/allocators/mmap_allocator.h"

namespace lumo {

namespace {

template <typename Allocator>
std::unique_ptr<BufferAllocator> make() {
    return std::make_unique<Allocator>();
}

constexpr AllocatorFactory ALLOCATORS[] = {make<MallocAllocator>, make<MmapAllocator>, make<InterleaveAllocator>};

}  // namespace

std::span<const AllocatorFactory> buffer_allocators() { return ALLOCATORS; }

std::unique_ptr<BufferAllocator> make_buffer_allocator(std::string_view name) {
    for (AllocatorFactory factory : ALLOCATORS)
        if (auto allocator = factory(); allocator->name() == name) return allocator;
    throw InvalidParametersException("", "Invalid Memory Allocator: " + std::string(name));
}

std::unique_ptr<BufferAllocator> load_buffer_allocator(const Config::Object& object,
                                                       const BufferAllocator& otherwise) {
    const Config::Value* name = object.find("Allocator");
    auto allocator = name ? make_buffer_allocator(name->to_string()) : otherwise.clone();
    allocator->load(object);
    return allocator;
}

std::unique_ptr<BufferAllocator> default_buffer_allocator(upL_t numa_nodes) {
    if (numa_nodes >= 2) return std::make_unique<InterleaveAllocator>();
    return std::make_unique<MmapAllocator>();
}

std::unique_ptr<BufferAllocator> ask_buffer_allocator() {
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        Console::print_line("Select a Memory Allocator:", 'T');
        Console::new_line();
        upL_t number = 0;
        for (AllocatorFactory factory : ALLOCATORS)
            Console::print_line("  " + std::to_string(number++) + "    " + factory()->display_name());
        Console::new_line();
    }
    const std::int64_t choice = Console::prompt_integer("option: ", 0, std::size(ALLOCATORS) - 1);
    return ALLOCATORS[choice]();
}

}  // namespace lumo
