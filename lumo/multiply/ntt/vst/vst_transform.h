/// The transform behind "VST": the vector transform with up to 10 primes, one prime at a time, so that a
/// product holds one image and the residues of one prime.
#pragma once

#include "lumo/multiply/ntt/vt3/vt3_transform.h"

namespace lumo {

class VstTransform : public Vt3Transform {
 public:
    static constexpr const char* TAG = "VST";
    static constexpr bool PRIME_BY_PRIME = true;
    using Vt3Transform::Vt3Transform;
};

}  // namespace lumo
