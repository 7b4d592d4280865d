#include "lumo/foundation/memory/aligned_buffer.h"

namespace lumo {

namespace {
constexpr upL_t UNIT_MASK = ALIGNMENT_BYTES - 1;
}

AlignedBufferC::AlignedBufferC(void* pointer, upL_t bytes) : ptr(static_cast<char*>(pointer)), length(bytes) {
    require((reinterpret_cast<std::uintptr_t>(pointer) & UNIT_MASK) == 0, "Pointer is misaligned.",
            "AlignedBufferC::AlignedBufferC()");
}

void* AlignedBufferC::spawn(upL_t bytes) {
    // The plain size is compared first: rounding a size near 2^64 would wrap to a small one.
    if (bytes > length || align_bytes(bytes) > length) [[unlikely]]
        throw BufferTooSmallException("AlignedBufferC::spawn()", length, bytes);
    const upL_t cut = align_bytes(bytes);
    char* piece = ptr;
    ptr += cut;
    length -= cut;
    return piece;
}

AlignedBufferC AlignedBufferC::spawn_buffer(upL_t bytes) {
    void* piece = spawn(bytes);
    return AlignedBufferC(piece, align_bytes(bytes));
}

void* AlignedBufferC::extract(upL_t bytes) {
    return extract_aligned(bytes, ALIGNMENT_BYTES);
}

void* AlignedBufferC::extract_aligned(upL_t bytes, upL_t alignment) {
    const auto base = reinterpret_cast<std::uintptr_t>(ptr);
    if (bytes > length) [[unlikely]]
        throw BufferTooSmallException("AlignedBufferC::extract()", length, bytes);
    const std::uintptr_t start = (base + length - bytes) & ~std::uintptr_t(alignment - 1);
    if (start < base) [[unlikely]]
        throw BufferTooSmallException("AlignedBufferC::extract()", length, bytes);
    length = start - base;
    return ptr + length;
}

std::pair<AlignedBufferC, AlignedBufferC> AlignedBufferC::halves() const {
    const upL_t half = (length / 2) & ~UNIT_MASK;
    return {AlignedBufferC(ptr, half), AlignedBufferC(ptr + half, half)};
}

}  // namespace lumo
