/// Digits from the residues of up to 10 primes, whatever kernels they come from: scalar, for what the joins
/// of the kernels do not cover.
#pragma once

#include "lumo/foundation/types/types.h"
#include "lumo/multiply/kernels/vt3_kernels.h"

namespace lumo {

class Vt3WideJoin {
 public:
    /// Primes of even places come in the one form, those of odd places in the other.
    Vt3WideJoin(const kernels::Vt3Shape& shape, const kernels::Vt3Crt& crt, kernels::Vt3Form even,
                kernels::Vt3Form odd)
        : all(shape), constants(crt), forms{even, odd} {}

    /// As Vt3Kernels::join(). A carry of 4 words is enough for up to 9 primes.
    template <std::size_t CARRY>
    void operator()(std::uint64_t* tiles, kernels::DigitOutput<CARRY>& output) const;

 private:
    /// Residues of a row to [0, p), in place.
    void reduce(std::uint64_t* row) const;
    void digit(const std::uint64_t* factors, std::uint64_t* value, unsigned words) const;

    const kernels::Vt3Shape& all;
    const kernels::Vt3Crt& constants;
    kernels::Vt3Form forms[2];
};

}  // namespace lumo
