/// The hashes of the digits of an output.
#pragma once

#include <string>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Floor(|x| * 10^dec) and Floor(|x| * 16^hex) modulo 2^61 - 1, canonical; 0 where there are no digits.
class HashedDigits {
 public:
    HashedDigits() = default;
    /// InvalidParametersException "Hash is out of range." for a value above the modulus.
    HashedDigits(std::uint64_t dec, std::uint64_t hex);

    std::uint64_t dec() const { return dec_hash; }
    std::uint64_t hex() const { return hex_hash; }
    /// "Dec Hash: Floor(|x| * 10^dec) mod (2^61 - 1) = " and the value.
    std::string dec_line() const;
    /// "Hex Hash: Floor(|x| * 16^hex) mod (2^61 - 1) = " and the value.
    std::string hex_line() const;

 private:
    std::uint64_t dec_hash = 0;
    std::uint64_t hex_hash = 0;
};

}  // namespace lumo
