#include <emmintrin.h>

#include "lumo/numbers/words/blocks.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

namespace {

/// From here on the target would only push useful lines out of the caches.
constexpr upL_t STREAM_BYTES = upL_t(1) << 20;
constexpr upL_t LEAST_BYTES = 131072;

upL_t bytes_to_boundary(const void* T, upL_t boundary) {
    return (upL_t(0) - reinterpret_cast<std::uintptr_t>(T)) % boundary;
}

/// Ascending, each group of 64 bytes read before it is written: T may lie below A and overlap it.
void stream_copy(char* T, const char* A, upL_t bytes) {
    const upL_t head = std::min(bytes_to_boundary(T, 64), bytes);
    std::memmove(T, A, head);
    upL_t i = head;
    for (; i + 64 <= bytes; i += 64) {
        const auto* from = reinterpret_cast<const __m128i*>(A + i);
        auto* to = reinterpret_cast<__m128i*>(T + i);
        const __m128i w0 = _mm_loadu_si128(from), w1 = _mm_loadu_si128(from + 1);
        const __m128i w2 = _mm_loadu_si128(from + 2), w3 = _mm_loadu_si128(from + 3);
        _mm_stream_si128(to, w0);
        _mm_stream_si128(to + 1, w1);
        _mm_stream_si128(to + 2, w2);
        _mm_stream_si128(to + 3, w3);
    }
    // Streamed lines must be visible before another thread is told that the copy is done.
    _mm_sfence();
    std::memmove(T + i, A + i, bytes - i);
}

}  // namespace

void bp_copy_bytes(void* T, const void* A, upL_t bytes, const ParallelContext& ctx) {
    auto* to = static_cast<char*>(T);
    const auto* from = static_cast<const char*>(A);
    if (bytes < STREAM_BYTES && ctx.tds < 2) {
        if (bytes != 0) std::memmove(to, from, bytes);
        return;
    }
    const bool streamed = bytes >= STREAM_BYTES;
    auto copy = [=](upL_t start, upL_t size) {
        if (streamed)
            stream_copy(to + start, from + start, size);
        else if (size != 0)
            std::memmove(to + start, from + start, size);
    };
    const upL_t prefix = bytes_to_boundary(T, ALIGNMENT_BYTES);
    if (runs_serially(bytes, prefix, LEAST_BYTES, ctx)) {
        copy(0, bytes);
        return;
    }
    copy(0, prefix);
    const BlockCut cut = cut_blocks(bytes - prefix, ctx.tds, LEAST_BYTES, ALIGNMENT_BYTES);
    parallel_for(*ctx.parallelizer, 0, cut.count,
                 [&](upL_t block) { copy(prefix + cut.start(block), cut.size(block)); });
}

}  // namespace lumo
