#include "lumo/foundation/memory/allocators/allocator_registry.h"

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/memory/allocators/interleave_allocator.h"
#include "lumo/foundation/memory/allocators/malloc_allocator.h"
#include "lumo/foundation/memory/allocators/mmap_allocator.h"

namespace lumo {

namespace {

using AllocatorFactory = std::unique_ptr<BufferAllocator> (*)();

template <typename Allocator>
std::unique_ptr<BufferAllocator> make() {
    return std::make_unique<Allocator>();
}

constexpr AllocatorFactory ALLOCATORS[] = {make<MallocAllocator>, make<MmapAllocator>,
                                           make<InterleaveAllocator>};

}  // namespace

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
    std::vector<std::string> names;
    for (AllocatorFactory factory : ALLOCATORS) names.push_back(factory()->display_name());
    return ALLOCATORS[Console::choose("Select a Memory Allocator:", names)]();
}

}  // namespace lumo
