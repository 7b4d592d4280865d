/// Constants modulo primes below 2^48 in the forms of the fields.
#pragma once

#include "lumo/foundation/types/types.h"
#include "lumo/multiply/kernels/vt3_kernels.h"
#include "lumo/multiply/ntt/modular.h"

namespace lumo {

/// w < p as a constant factor in a form.
kernels::Vt3Factor vt3_factor(kernels::Vt3Form form, std::uint64_t w, std::uint64_t p);
/// w < p as mul_var() of the field takes it: w 2^B mod p, or a double.
std::uint64_t vt3_variable(kernels::Vt3Form form, std::uint64_t w, std::uint64_t p);

}  // namespace lumo
