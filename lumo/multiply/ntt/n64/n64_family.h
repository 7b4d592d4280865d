/// "N64" as the tables know it.
#pragma once

#include "lumo/multiply/ntt/n64/n64_transform.h"

namespace lumo {

struct N64Family {
    using Transform = N64Transform;
    using Footprint = N64Footprint;
    static constexpr const char* NAME = "64-bit NTT";
    static constexpr const char* VERSION = "NTT64";
    static constexpr upL_t MAX_BITS = N64_MAX_BITS;
    static std::span<const N64Size> sizes() { return n64_sizes(); }
    static const N64Size& size_for(upL_t bits) { return n64_size_for(bits); }
};

}  // namespace lumo
