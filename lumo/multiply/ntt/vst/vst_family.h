/// "VST" as the tables know it.
#pragma once

#include "lumo/multiply/ntt/vst/vst_sizes.h"
#include "lumo/multiply/ntt/vst/vst_transform.h"

namespace lumo {

struct VstFamily {
    using Transform = VstTransform;
    using Footprint = Vt3Footprint;
    static constexpr const char* NAME = "VST Algorithm";
    static constexpr const char* VERSION = "VSTv2";
    static constexpr upL_t MAX_BITS = VST_MAX_BITS;
    static std::span<const Vt3Size> sizes() { return vst_sizes(); }
    static const Vt3Size& size_for(upL_t bits) { return vst_size_for(bits); }
};

}  // namespace lumo
