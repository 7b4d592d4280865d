/// "VT3" as the tables know it.
#pragma once

#include "lumo/multiply/ntt/vt3/vt3_transform.h"

namespace lumo {

struct Vt3Family {
    using Transform = Vt3Transform;
    using Footprint = Vt3Footprint;
    static constexpr const char* NAME = "VST Algorithm v3";
    static constexpr const char* VERSION = "VSTv3";
    static constexpr upL_t MAX_BITS = VT3_MAX_BITS;
    static std::span<const Vt3Size> sizes() { return vt3_sizes(); }
    static const Vt3Size& size_for(upL_t bits) { return vt3_size_for(bits); }
};

}  // namespace lumo
