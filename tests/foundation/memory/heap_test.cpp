#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <random>

#include "console_talk.h"
#include "death_output.h"
#include "lumo/foundation/memory/aligned_malloc.h"
#include "lumo/foundation/memory/heap/scoped_heap.h"

namespace lumo {
namespace {

using testing::HasSubstr;

/// A heap over storage of its own.
struct OwnedHeap {
    explicit OwnedHeap(upL_t bytes) : storage(make_aligned<char>(bytes)), heap(storage.get(), bytes) {}
    AlignedPtr<char> storage;
    BufferHeap heap;
};

/// First fit over gaps, told once more in the plainest way: start and size of each block.
class Model {
 public:
    explicit Model(upL_t bytes) : size(bytes & ~upL_t(7)) {}
    std::optional<upL_t> allocate(upL_t bytes) {
        bytes = std::max<upL_t>(round_up(bytes, 8), 8);
        if (size - 16 * blocks.size() - top() < 16) return std::nullopt;
        upL_t at = 0;
        for (const auto& [start, length] : blocks) {
            if (start - at >= bytes) break;
            at = start + length;
        }
        if (at == top() && at + bytes + 16 * (blocks.size() + 1) > size) return std::nullopt;
        blocks[at] = bytes;
        return at;
    }
    void release(upL_t start) { blocks.erase(start); }
    upL_t top() const { return blocks.empty() ? 0 : blocks.rbegin()->first + blocks.rbegin()->second; }
    std::map<upL_t, upL_t> blocks;

 private:
    upL_t size;
};

TEST(BufferHeap, AgreesWithTheModel) {
    EXPECT_EQ(BufferHeap().allocate(1), nullptr);
    for (unsigned seed = 1; seed <= 20; seed++) {
        SCOPED_TRACE(seed);
        std::mt19937_64 random(seed);
        const upL_t bytes = random() % (seed < 5 ? 100 : 4000);
        OwnedHeap owned(bytes);
        BufferHeap& heap = owned.heap;
        Model model(bytes);
        upL_t peak = 0;
        for (int step = 0; step < 2000; step++) {
            if (random() % 5 < 3) {
                const upL_t request = random() % (random() % 8 ? 120 : 3000);
                const auto expected = model.allocate(request);
                char* got = static_cast<char*>(heap.allocate(request));
                ASSERT_EQ(got != nullptr, expected.has_value());
                if (!got) continue;
                ASSERT_EQ(upL_t(got - owned.storage.get()), *expected);
                std::memset(got, 0xa5, std::max<upL_t>(request, 8));  // must not reach the table
            } else if (!model.blocks.empty()) {
                auto victim = model.blocks.begin();
                std::advance(victim, random() % model.blocks.size());
                heap.release(owned.storage.get() + victim->first);
                model.release(victim->first);
            }
            peak = std::max(peak, model.top());
            ASSERT_EQ(heap.active_blocks(), model.blocks.size());
            ASSERT_EQ(heap.current_usage(), model.top());
            ASSERT_EQ(heap.peak_usage(), peak);
        }
    }
}

TEST(HeapBlocks, KeepTheirWordsThroughAllOperations) {
    struct Block {
        unsigned char* data;
        upL_t size;
        unsigned char fill;
    };
    for (unsigned seed = 1; seed <= 10; seed++) {
        std::mt19937_64 random(seed);
        OwnedHeap owned(1 << 16);
        std::vector<Block> blocks;
        for (int step = 0; step < 400; step++) {
            const upL_t alignment = upL_t(1) << (random() % 10);
            const bool room = owned.heap.free_at_top() > 3000;
            const upL_t which = blocks.empty() ? 0 : random() % blocks.size();
            if (blocks.empty() || (random() % 2 && room)) {
                const upL_t size = random() % 900;
                auto* data = static_cast<unsigned char*>(heap_alloc(&owned.heap, size, alignment));
                ASSERT_EQ(reinterpret_cast<std::uintptr_t>(data) % std::max<upL_t>(alignment, 8), 0);
                blocks.push_back({data, size, static_cast<unsigned char>(random())});
                std::memset(data, blocks.back().fill, size);
            } else if (const auto choice = random() % 3; choice == 0) {
                heap_free(blocks[which].data);
                blocks.erase(blocks.begin() + which);
            } else if (choice == 1) {
                Block& block = blocks[which];
                block.data = static_cast<unsigned char*>(heap_shrink_front(block.data, alignment));
                ASSERT_EQ(heap_shrink_front(block.data, alignment), block.data);  // no gap is left
            } else if (room) {  // the highest block may grow
                Block& highest = *std::ranges::max_element(blocks, {}, &Block::data);
                highest.size += random() % 300;
                heap_expand(highest.data, highest.size);
                std::memset(highest.data, highest.fill, highest.size);
            }
            for (const Block& block : blocks) {
                heap_check(block.data);
                ASSERT_EQ(std::count(block.data, block.data + block.size, block.fill), block.size) << seed;
            }
        }
        for (const Block& block : blocks) heap_free(block.data);
        EXPECT_EQ(owned.heap.current_usage(), 0);
    }
}

TEST(ScopedHeap, HandsSurvivorsToItsParent) {
    OwnedHeap owned(1 << 14);
    void* before = heap_alloc(&owned.heap, 10, 8);
    std::vector<char*> survivors;
    {
        ScopedHeap scoped(&owned.heap, 4000);
        void* dead = heap_alloc(&scoped.heap(), 100, 8);
        for (int i = 0; i < 5; i++) {
            survivors.push_back(static_cast<char*>(heap_alloc(&scoped.heap(), 32, 64)));
            std::memset(survivors.back(), 'a' + i, 32);
        }
        heap_free(dead);
        EXPECT_EQ(owned.heap.active_blocks(), 2);
    }
    EXPECT_EQ(owned.heap.active_blocks(), 6);
    heap_free(before);
    for (int i = 4; i >= 0; i--) {
        EXPECT_EQ(survivors[i][31], 'a' + i);
        heap_free(survivors[i]);
    }
    EXPECT_EQ(owned.heap.current_usage(), 0);
}

TEST(ScopedHeap, TellsOfLeaksWithoutAParent) {
    const auto told = [](bool leak) {
        return printed_by([&] {
            ScopedHeap scoped(nullptr, 1000);
            if (leak) heap_alloc(&scoped.heap(), 10, 8);
        });
    };
    EXPECT_THAT(told(true), HasSubstr("Memory leak detected\n"));
    EXPECT_EQ(told(false), "");
    heap_free(nullptr);
    heap_free(reinterpret_cast<void*>(~std::uintptr_t(0)));
}

TEST(ScopedHeapPair, CountsTwiceTheLargerPeak) {
    OwnedHeap owned(1 << 14);
    owned.heap.allocate(1000);
    EXPECT_EQ(owned.heap.requirement(), 1000);
    {
        ScopedHeapPair pair(owned.heap, 3000);
        pair.first().release(pair.first().allocate(400));
        pair.second().release(pair.second().allocate(720));
        owned.heap.release(owned.heap.allocate(100));  // above both, which do not count as they are
    }
    EXPECT_EQ(owned.heap.requirement(), 1000 + 2 * 720);
    EXPECT_GT(owned.heap.peak_usage(), 6000);
    { ScopedHeapPair smaller(owned.heap, 3000); }
    EXPECT_EQ(owned.heap.requirement(), 1000 + 2 * 720);
}

TEST(HeapDump, ListsBlocksAndGaps) {
    OwnedHeap owned(4096);
    EXPECT_THAT(printed_by([&] { owned.heap.dump(); }), HasSubstr("No Active Allocations\n"));
    void* low = owned.heap.allocate(64);
    owned.heap.allocate(128);
    owned.heap.release(low);
    const std::string dump = printed_by([&] { owned.heap.dump(); });
    for (const char* text : {"Heap Table Dump:", "Free Space", "Base: ", "Fragmentation       : "})
        EXPECT_THAT(dump, HasSubstr(text));
}

TEST(HeapDeathTest, DamageEndsTheProgram) {
    OwnedHeap owned(4096), empty(100), full(96);
    full.heap.expand(full.heap.allocate(8), 80);  // all but the 16 bytes of the table
    EXPECT_EQ(full.heap.free_at_top(), 0);
    char* block = static_cast<char*>(heap_alloc(&owned.heap, 24, 8));
    const auto damage_and_free = [&](int offset) {
        block[offset] ^= 1;
        heap_free(block);
    };
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { damage_and_free(-1); }, "Array Bounds Checking: An array under-run has been detected."},
        {[&] { damage_and_free(24); }, "Array Bounds Checking: An array over-run has been detected."},
        {[&] { heap_alloc(&owned.heap, 5000, 8); }, "Memory Allocation Failure."},
        {[&] { heap_expand(block, 5000); }, "Unable to expand block."},
        {[&] { owned.heap.release(block); }, "Heap Inconsistency"},
        {[&] { BufferHeap(block + 4, 100); }, "Alignment Error"},
        {[&] { heap_expand(heap_alloc(nullptr, 8, 8), 100); }, "Pointer not associated with a heap."},
        {[&] { empty.heap.release(block); }, "Heap is empty."},
    };
    for (const auto& [f, message] : cases) EXPECT_DEATH(dying(f), message);
    heap_free(block);
}

}  // namespace
}  // namespace lumo
