/// The transform behind "C17": the primes of the vector transform are shared out between kernels of integers
/// and kernels of doubles, so that both kinds of units of a core have work. An experiment: no table uses it.
#pragma once

#include "lumo/multiply/ntt/vt3/vt3_transform.h"

namespace lumo {

class C17Transform : public Vt3Transform {
 public:
    static constexpr NttIdentity IDENTITY{"C17", "Code 17 Experiment", "C17v1", VT3_MAX_BITS};
    C17Transform(const Vt3Size& size, upL_t tds);
};

}  // namespace lumo
