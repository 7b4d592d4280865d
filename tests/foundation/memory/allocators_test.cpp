#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <map>

#include "console_talk.h"
#include "death_output.h"
#include "lumo/foundation/config/reader.h"
#include "lumo/foundation/memory/allocators/allocator_registry.h"
#include "lumo/foundation/memory/allocators/interleave_allocator.h"
#include "lumo/foundation/memory/allocators/mmap_allocator.h"
#include "lumo/foundation/memory/allocators/numa_memory.h"
#include "lumo/foundation/memory/allocators/page_mapping.h"
#include "lumo/foundation/memory/large_buffer.h"
#include "lumo/foundation/parallel/pushpool.h"

namespace lumo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

void expect_pattern(const void* pointer, upL_t bytes) {
    const auto* words = static_cast<const std::uint32_t*>(pointer);
    const auto* text = static_cast<const char*>(pointer);
    EXPECT_EQ(text[0], bytes > 1 ? '{' : '@');
    EXPECT_EQ(text[bytes - 1], '@');
    for (std::uint32_t i = 1; 4 * (i + 1) < bytes; i++)
        ASSERT_EQ(words[i], std::uint32_t(i * i * 0xc82b9175u - 933796325u)) << i << " of " << bytes;
}

TEST(TouchPages, WritesThePatternHoweverItIsCut) {
    const auto pool = make_pushpool(3);
    for (upL_t bytes : {1, 2, 5, 8, 12, 4096, 4099, 5 << 20}) {
        std::vector<std::uint32_t> words(bytes / 4 + 2, 0);
        touch_pages(words.data(), bytes, {7, pool.get()});
        expect_pattern(words.data(), bytes);
        EXPECT_EQ(reinterpret_cast<const char*>(words.data())[bytes], 0);
    }
}

TEST(Allocators, GiveUsableMemory) {
    const auto pool = make_pushpool(2);
    for (const char* name : {"malloc", "mmap", "interleave"}) {
        const auto allocator = make_buffer_allocator(name);
        SCOPED_TRACE(name);
        for (upL_t bytes : {1, 4097, 3 << 20}) {
            const std::string printed = printed_by([&] {
                LargeBuffer owner(*allocator, bytes, {4, pool.get()});
                EXPECT_EQ(owner.size(), bytes);
                EXPECT_GE(owner.pages().bytes, bytes);
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(owner.buffer().data()) % 4096, 0);
                std::memset(owner.buffer().data(), 0x5a, bytes);
                LargeBuffer moved = std::move(owner);
                EXPECT_EQ(owner.size(), 0);
                EXPECT_EQ(static_cast<char*>(moved.buffer().data())[bytes - 1], 0x5a);
            });
            EXPECT_EQ(printed, "");  // being refused locks and large pages is told by the record alone
        }
        for (upL_t impossible : {upL_t(1) << 46, upL_t(1) << 60})
            EXPECT_THROW(LargeBuffer(*allocator, impossible), MemoryAllocationFailedException);
    }
}

TEST(MmapAllocator, ForcedKindsGiveAllOrNothing) {
    for (bool large : {false, true}) {
        MmapAllocator allocator;
        (large ? allocator.large_pages : allocator.locked_pages) = PagePolicy::FORCED;
        BufferBlock block = allocator.allocate(4 << 20, {});
        if (block.pointer == nullptr) {
            EXPECT_EQ(block.error, large ? "Unable to force large pages." : "Unable to force locked pages.");
        } else {
            EXPECT_EQ(large ? block.pages.large_page_bytes : block.pages.locked_bytes, block.pages.bytes);
        }
        allocator.release(block);
        EXPECT_EQ(block.pointer, nullptr);
        allocator.release(block);  // a second time is harmless
    }
}

TEST(MmapAllocator, NodesThatDoNotExistFail) {
    MmapAllocator allocator;
    allocator.node = 999;
    const BufferBlock block = allocator.allocate(1 << 20, {});
    EXPECT_EQ(block.pointer, nullptr);
    EXPECT_THAT(block.error, testing::AnyOf("Insufficient Memory or Invalid Node.",
                                            "Unable to place all pages onto node 999."));
}

TEST(Interleaving, SpreadsInProportion) {
    for (bool hashed : {false, true}) {
        std::map<upL_t, upL_t> counts;
        for (upL_t s = 0; s < 6000; s++) counts[interleaved_node(s, 6, hashed)]++;
        ASSERT_EQ(counts.size(), 6);
        for (const auto& [node, count] : counts) EXPECT_NEAR(double(count), 1000, 20) << node;
    }
}

TEST(Interleaving, TouchesEveryStretchWhateverTheNodes) {
    const auto pool = make_pushpool(3);
    const upL_t bytes = 13 * LARGE_PAGE_BYTES + 8192;
    for (bool hashed : {false, true}) {
        MappedRegion region = map_joinable_pages(bytes);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(region.pointer) % LARGE_PAGE_BYTES, 0);
        const std::string told = printed_by([&] {
            touch_interleaved(region.pointer, bytes, {0, 900, 0, 901}, hashed, {0, 900}, {8, pool.get()});
        });
        EXPECT_THAT(told, HasSubstr(" failed to bind to node 900"));
        EXPECT_THAT(told, testing::Not(HasSubstr("901")));  // does not exist: no error
        expect_pattern(region.pointer, bytes);
        upL_t sum = 0;
        const auto shares = query_nodes(region.pointer, region.mapped_bytes, SMALL_PAGE_BYTES);
        for (const NodeBytes& share : shares.value_or(std::vector<NodeBytes>())) sum += share.bytes;
        EXPECT_EQ(sum, shares ? region.mapped_bytes : 0);
        unmap_pages(region);
    }
    EXPECT_FALSE(ThreadMemoryNode(99999).bound());
}

TEST(AllocatorSettings, AreReadAndRefused) {
    const Config::ValuePtr saved_text = Config::parse_text(
        "{ Allocator : \"interleave\" Hashed : \"false\" LockedPages : \"disabled\" Nodes : [0 0 1] }");
    const MmapAllocator otherwise;
    auto allocator = load_buffer_allocator(saved_text->to_object(), otherwise);
    const auto& interleave = dynamic_cast<const InterleaveAllocator&>(*allocator);
    EXPECT_FALSE(interleave.hashed);
    EXPECT_EQ(interleave.locked_pages, PagePolicy::DISABLED);
    EXPECT_THAT(interleave.nodes, ElementsAre(0, 0, 1));
    EXPECT_STREQ(load_buffer_allocator(Config::Object(), otherwise)->name(), "mmap");
    EXPECT_STREQ(default_buffer_allocator(1)->name(), "mmap");
    EXPECT_STREQ(default_buffer_allocator(2)->name(), "interleave");
    EXPECT_THROW(make_buffer_allocator("Malloc"), InvalidParametersException);
    for (const char* text : {"{ Allocator : \"mmap\" LargePages : \"yes\" }",
                             "{ Allocator : \"interleave\" Nodes : [-1] }", "{ Allocator : \"x\" }"})
        EXPECT_THROW(load_buffer_allocator(Config::parse_text(text)->to_object(), MmapAllocator()),
                     InvalidParametersException)
            << text;
}

TEST(AllocatorMenus, ReadNodesUntilAnEmptyLine) {
    InterleaveAllocator interleave;
    EXPECT_THAT(talk("1\nx\n1\n\n", [&] { interleave.menu_action(2); }),
                HasSubstr("Non-existant nodes simply won't bind."));
    EXPECT_THAT(interleave.nodes, ElementsAre(1, 1));
}

TEST(LargeHeap, TellsItsOutcome) {
    const auto allocator = make_buffer_allocator("mmap");
    std::unique_ptr<LargeHeap> heap;
    EXPECT_THAT(printed_by([&] { heap = make_large_heap(*allocator, 1 << 20); }), HasSubstr(" pages"));
    heap_free(heap_alloc(&heap->heap(), 1000));
    EXPECT_EQ(printed_by([&] { heap = make_large_heap(*allocator, 0); }), "");
    EXPECT_EQ(heap->heap().allocate(1), nullptr);
    EXPECT_EXIT(dying([&] { make_large_heap(*allocator, upL_t(1) << 46); }), testing::ExitedWithCode(1),
                "Large heap allocation failed.");
}

TEST(MallocAllocatorDeathTest, DamageEndsTheProgram) {
    const auto allocator = make_buffer_allocator("malloc");
    BufferBlock block = allocator->allocate(100, {});
    EXPECT_DEATH(dying([&] {
                     static_cast<char*>(block.pointer)[100] ^= 1;
                     allocator->release(block);
                 }),
                 "Memory buffer has been overrun.");
    allocator->release(block);
}

}  // namespace
}  // namespace lumo
