/// "C17" as the registry knows it.
#pragma once

#include "lumo/multiply/ntt/c17/c17_transform.h"

namespace lumo {

struct C17Family {
    using Transform = C17Transform;
    using Footprint = Vt3Footprint;
    static constexpr const char* NAME = "Code 17 Experiment";
    static constexpr const char* VERSION = "C17v1";
    static constexpr upL_t MAX_BITS = VT3_MAX_BITS;
    static std::span<const Vt3Size> sizes() { return vt3_sizes(); }
    static const Vt3Size& size_for(upL_t bits) { return vt3_size_for(bits); }
};

}  // namespace lumo
