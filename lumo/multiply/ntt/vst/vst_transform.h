/// The transform behind "VST": the vector transform with up to 10 primes, one prime at a time, so that a
/// product holds one image and the residues of one prime.
#pragma once

#include "lumo/multiply/ntt/vst/vst_sizes.h"
#include "lumo/multiply/ntt/vt3/vt3_transform.h"

namespace lumo {

class VstTransform : public Vt3Transform {
 public:
    static constexpr NttIdentity IDENTITY{"VST", "VST Algorithm", "VSTv2", VST_MAX_BITS};
    static constexpr bool PRIME_BY_PRIME = true;
    static std::span<const Size> sizes() { return vst_sizes(); }
    static const Size& size_for(upL_t bits) { return vst_size_for(bits); }
    using Vt3Transform::Vt3Transform;
};

}  // namespace lumo
