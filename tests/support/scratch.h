/// Aligned memory of exactly the bytes asked for; what is written behind it is noticed.
#pragma once

#include <cstdlib>
#include <cstring>
#include <memory>

#include "lumo/multiply/multiply_context.h"

namespace lumo::testing {

class Scratch {
 public:
    explicit Scratch(upL_t bytes)
        : length(bytes),
          memory(static_cast<unsigned char*>(std::aligned_alloc(128, align_bytes(bytes + 128)))) {
        std::memset(memory.get(), GUARD, bytes + 128);
    }
    void* data() const { return memory.get(); }
    template <typename wtype>
    wtype* words() const {
        return static_cast<wtype*>(data());
    }
    AlignedBufferC buffer() const { return {memory.get(), length}; }
    MultiplyContext context(upL_t tds = 1, BasicParallelizer& parallelizer = serial_parallelizer()) const {
        return MultiplyContext{tds, &parallelizer}.with_scratch(buffer());
    }
    bool intact() const {
        for (upL_t i = length; i < length + 128; i++)
            if (memory.get()[i] != GUARD) return false;
        return true;
    }

 private:
    static constexpr unsigned char GUARD = 0xa7;
    struct Free {
        void operator()(unsigned char* p) const { std::free(p); }
    };
    upL_t length;
    std::unique_ptr<unsigned char, Free> memory;
};

}  // namespace lumo::testing
