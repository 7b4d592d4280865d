/// Non-owning views from which plans cut their scratch. Nothing here allocates.
#pragma once

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/foundation/types/types.h"

namespace lumo {

/// Bytes whose start is a multiple of 128. Pieces are cut in multiples of 128 bytes.
class AlignedBufferC {
 public:
    AlignedBufferC() = default;
    /// Misalignment of the pointer is an assertion ("Pointer is misaligned.").
    AlignedBufferC(void* pointer, upL_t bytes);
    void* data() const { return ptr; }
    upL_t size() const { return length; }
    /// Cuts `bytes` (rounded up to 128) from the front. Throws BufferTooSmallException
    /// "AlignedBufferC::spawn()".
    void* spawn(upL_t bytes);
    AlignedBufferC spawn_buffer(upL_t bytes);
    template <typename wtype>
    wtype* spawn_words(upL_t words) {
        return static_cast<wtype*>(spawn(words * sizeof(wtype)));
    }
    /// Cuts `bytes` (rounded up to 128) from the end.
    void* extract(upL_t bytes);
    /// Cuts from the end so that the piece starts at a multiple of `alignment` (a power of two >= 128).
    void* extract_aligned(upL_t bytes, upL_t alignment);
    /// Two views of half the bytes each, rounded down to 128: disjoint scratch for two tasks.
    std::pair<AlignedBufferC, AlignedBufferC> halves() const;

 private:
    char* ptr = nullptr;
    upL_t length = 0;
};

/// Scratch words, cut from the bottom.
template <typename wtype>
class LinearWordBuffer {
 public:
    LinearWordBuffer() = default;
    LinearWordBuffer(wtype* pointer, upL_t words) : ptr(pointer), length(words) {}
    wtype* data() const { return ptr; }
    upL_t size() const { return length; }
    /// The first n words; throws BufferTooSmallException "LinearWordBuffer::cut_from_bottom()" if fewer are
    /// left.
    wtype* cut_from_bottom(upL_t n) {
        if (n > length) throw BufferTooSmallException("LinearWordBuffer::cut_from_bottom()", length, n);
        wtype* piece = ptr;
        ptr += n;
        length -= n;
        return piece;
    }

 private:
    wtype* ptr = nullptr;
    upL_t length = 0;
};

}  // namespace lumo
