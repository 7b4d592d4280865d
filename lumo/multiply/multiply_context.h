/// What a large multiplication may use: pieces, threads and scratch. Passed down by value-like reference.
#pragma once

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

struct MultiplyContext {
    upL_t tds = 1;
    BasicParallelizer* parallelizer = &serial_parallelizer();
    upL_t reserved = 0;
    upL_t passthrough = 0;    ///< handed on unread
    void* scratch = nullptr;  ///< aligned to 128 bytes
    upL_t scratch_bytes = 0;

    ParallelContext parallel() const { return {tds, parallelizer}; }
    AlignedBufferC buffer() const { return {scratch, scratch_bytes}; }
    /// The same threads with other scratch.
    MultiplyContext with_scratch(AlignedBufferC buffer) const {
        return {tds, parallelizer, 0, passthrough, buffer.data(), buffer.size()};
    }
    /// The same scratch in the caller's thread.
    MultiplyContext single_threaded() const {
        return {1, &serial_parallelizer(), 0, passthrough, scratch, scratch_bytes};
    }
};

}  // namespace lumo
