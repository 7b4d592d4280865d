#include "lumo/multiply/ntt/vt3/vt3_modular.h"

#include <bit>

namespace lumo {

using kernels::Vt3Form;

namespace {

std::uint64_t balanced_bits(std::uint64_t w, std::uint64_t p) {
    return std::bit_cast<std::uint64_t>(w > p / 2 ? -static_cast<double>(p - w) : static_cast<double>(w));
}

}  // namespace

kernels::Vt3Factor vt3_factor(Vt3Form form, std::uint64_t w, std::uint64_t p) {
    if (form == Vt3Form::floating) {
        const std::uint64_t bits = balanced_bits(w, p);
        return {bits, std::bit_cast<std::uint64_t>(std::bit_cast<double>(bits) / static_cast<double>(p))};
    }
    const unsigned shift = form == Vt3Form::integer52 ? 52 : 64;
    return {w, static_cast<std::uint64_t>((static_cast<unsigned __int128>(w) << shift) / p)};
}

std::uint64_t vt3_variable(Vt3Form form, std::uint64_t w, std::uint64_t p) {
    if (form == Vt3Form::floating) return balanced_bits(w, p);
    const unsigned shift = form == Vt3Form::integer52 ? 52 : 64;
    return static_cast<std::uint64_t>((static_cast<unsigned __int128>(w) << shift) % p);
}

}  // namespace lumo
