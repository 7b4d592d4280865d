#include <gtest/gtest.h>

#include <cstring>

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/memory/aligned_malloc.h"

#include "death_output.h"
#include "failures.h"

namespace lumo {
namespace {

bool is_aligned(const void* pointer, upL_t alignment) {
    return reinterpret_cast<std::uintptr_t>(pointer) % alignment == 0;
}

TEST(AlignedMalloc, AlignsAndHoldsItsBytes) {
    for (upL_t alignment : {0, 1, 4, 8, 16, 128, 4096, 1 << 20})
        for (upL_t size : {0, 1, 7, 8, 1000}) {
            void* pointer = aligned_malloc(size, alignment);
            EXPECT_TRUE(is_aligned(pointer, std::max<upL_t>(alignment, 8)));
            std::memset(pointer, 0xff, size);
            aligned_free(pointer);
        }
    aligned_free(nullptr);
    EXPECT_THROW(aligned_malloc(~upL_t(0) - 8, 8), std::bad_alloc);
    EXPECT_THROW(aligned_malloc(upL_t(1) << 60, 8), std::bad_alloc);
    for (upL_t alignment : {3, 12, 129})
        EXPECT_THROW(aligned_malloc(16, alignment), InvalidParametersException);
}

TEST(AlignedMalloc, FindsDamage) {
    for (int offset : {-1, 24}) {
        char* bytes = static_cast<char*>(aligned_malloc(24, 8));
        bytes[offset] ^= 1;
        EXPECT_EQ(failure_of([&] { aligned_free(bytes); }),
                  std::string("AlgorithmFailedException aligned_free(): Memory buffer has been ") +
                      (offset < 0 ? "underrun." : "overrun."));
        bytes[offset] ^= 1;
        aligned_free(bytes);
    }
}

TEST(SmallAlignedMalloc, Aligns) {
    for (upL_t alignment = 1; alignment <= 128; alignment *= 2) {
        void* pointer = small_aligned_malloc(100, alignment);
        EXPECT_TRUE(is_aligned(pointer, std::max<upL_t>(alignment, 8)));
        std::memset(pointer, 0, 100);
        small_aligned_free(pointer);
    }
    small_aligned_free(nullptr);
    EXPECT_EQ(small_aligned_malloc(~upL_t(0), 8), nullptr);
    EXPECT_DEATH(dying([] { small_aligned_malloc(8, 256); }), "Invalid Function Parameters:   ");
}

TEST(AlignedBuffer, CutsFromBothEnds) {
    const AlignedPtr<char> storage = make_aligned<char>(4096, 4096);
    AlignedBufferC buffer(storage.get(), 4096);
    EXPECT_EQ(buffer.spawn(1), storage.get());
    EXPECT_EQ(buffer.size(), 4096 - 128);
    EXPECT_EQ(buffer.spawn(0), storage.get() + 128);
    EXPECT_EQ(buffer.extract(129), storage.get() + 4096 - 256);
    EXPECT_EQ(buffer.extract_aligned(100, 1024), storage.get() + 3072);
    const auto [low, high] = buffer.halves();
    EXPECT_EQ(low.size(), high.size());
    EXPECT_EQ(static_cast<char*>(low.data()) + low.size(), high.data());
    EXPECT_LE(low.size() + high.size(), buffer.size());
    const AlignedBufferC piece = buffer.spawn_buffer(130);
    EXPECT_EQ(piece.size(), 256);
    EXPECT_EQ(buffer.spawn_words<std::uint64_t>(16), reinterpret_cast<std::uint64_t*>(storage.get() + 384));
}

TEST(AlignedBuffer, RefusesMoreThanItHas) {
    const AlignedPtr<char> storage = make_aligned<char>(512, 128);
    AlignedBufferC buffer(storage.get(), 200);
    EXPECT_THROW(buffer.spawn(129), BufferTooSmallException);  // 256 after rounding
    EXPECT_THROW(buffer.spawn(~upL_t(0)), BufferTooSmallException);
    EXPECT_THROW(buffer.extract(201), BufferTooSmallException);
    EXPECT_THROW(buffer.extract_aligned(64, upL_t(1) << 60), BufferTooSmallException);
    EXPECT_EQ(buffer.size(), 200);
    buffer.spawn(128);
    EXPECT_EQ(buffer.halves().first.size(), 0);
    EXPECT_DEATH(dying([&] { AlignedBufferC(storage.get() + 64, 100); }), "Pointer is misaligned.");

    std::uint32_t words[4];
    LinearWordBuffer<std::uint32_t> linear(words, 4);
    EXPECT_EQ(linear.cut_from_bottom(3), words);
    EXPECT_THROW(linear.cut_from_bottom(2), BufferTooSmallException);
    EXPECT_EQ(linear.cut_from_bottom(1), words + 3);
}

}  // namespace
}  // namespace lumo
