/// Constants modulo primes below 2^48 in the forms of the fields.
#pragma once

#include "lumo/foundation/types/types.h"
#include "lumo/multiply/kernels/vt3_kernels.h"
#include "lumo/multiply/ntt/modular.h"

namespace lumo {

/// Makes w < p a constant factor in a form. Source: Moeller and Granlund (2011) for the quotient.
class Vt3FactorOf {
 public:
    Vt3FactorOf(kernels::Vt3Form form, std::uint64_t p);
    kernels::Vt3Factor operator()(std::uint64_t w) const;

 private:
    kernels::Vt3Form form;
    std::uint64_t p;
    unsigned shift;
    std::uint64_t reciprocal;  ///< (2^128 - 1) / (p 2^shift) - 2^64
};
/// w < p as mul_var() of the field takes it: w 2^B mod p, or a double.
std::uint64_t vt3_variable(kernels::Vt3Form form, std::uint64_t w, std::uint64_t p);

}  // namespace lumo
