#include "lumo/multiply/ntt/vt3/vt3_modular.h"

#include <bit>

namespace lumo {

using kernels::Vt3Form;

namespace {

std::uint64_t balanced_bits(std::uint64_t w, std::uint64_t p) {
    return std::bit_cast<std::uint64_t>(w > p / 2 ? -static_cast<double>(p - w) : static_cast<double>(w));
}

}  // namespace

Vt3FactorOf::Vt3FactorOf(Vt3Form form_, std::uint64_t p_)
    : form(form_),
      p(p_),
      shift(static_cast<unsigned>(std::countl_zero(p))),
      reciprocal(static_cast<std::uint64_t>(~static_cast<unsigned __int128>(0) / (p << shift))) {}

kernels::Vt3Factor Vt3FactorOf::operator()(std::uint64_t w) const {
    if (form == Vt3Form::floating) {
        const std::uint64_t bits = balanced_bits(w, p);
        return {bits, std::bit_cast<std::uint64_t>(std::bit_cast<double>(bits) / static_cast<double>(p))};
    }
    // u 2^64 / d by the reciprocal of d, p shifted up to 64 bits.
    const std::uint64_t d = p << shift, u = form == Vt3Form::integer52 ? w << shift >> 12 : w << shift;
    const unsigned __int128 product = static_cast<unsigned __int128>(reciprocal) * u;
    std::uint64_t q = static_cast<std::uint64_t>(product >> 64) + u + 1;
    std::uint64_t r = 0 - q * d;
    if (r > static_cast<std::uint64_t>(product)) q--, r += d;
    return {w, r >= d ? q + 1 : q};
}

std::uint64_t vt3_variable(Vt3Form form, std::uint64_t w, std::uint64_t p) {
    if (form == Vt3Form::floating) return balanced_bits(w, p);
    const unsigned shift = form == Vt3Form::integer52 ? 52 : 64;
    return static_cast<std::uint64_t>((static_cast<unsigned __int128>(w) << shift) % p);
}

}  // namespace lumo
