#include "lumo/radix/hashed_digits.h"

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/hash61.h"

namespace lumo {

HashedDigits::HashedDigits(std::uint64_t dec, std::uint64_t hex) : dec_hash(dec), hex_hash(hex) {
    if (dec > Hash61::MODULUS || hex > Hash61::MODULUS)
        throw InvalidParametersException("HashedDigits::HashedDigits()", "Hash is out of range.");
    dec_hash = Hash61::canonical(dec);
    hex_hash = Hash61::canonical(hex);
}

std::string HashedDigits::dec_line() const {
    return "Dec Hash: Floor(|x| * 10^dec) mod (2^61 - 1) = " + std::to_string(dec_hash);
}

std::string HashedDigits::hex_line() const {
    return "Hex Hash: Floor(|x| * 16^hex) mod (2^61 - 1) = " + std::to_string(hex_hash);
}

}  // namespace lumo
