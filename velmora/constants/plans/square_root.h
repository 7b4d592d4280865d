/// Square roots of one word, and the golden ratio by that of five. Precisions and sizes are words of `wtype`
/// unless named bytes.
#pragma once

#include "lumo/functions/inverse_sqrt.h"

namespace velmora {

template <typename wtype>
class Sqrt_BigFloatR {
 public:
    /// n >= 1; run()'s ctx.tds is at most `tds`.
    Sqrt_BigFloatR(wtype n, lumo::upL_t p, lumo::upL_t tds);

    lumo::upL_t total_bytes() const { return bytes; }
    lumo::upL_t max_product_words() const { return root.p + 8; }
    /// Words at the start of the scratch that the result occupies.
    lumo::upL_t result_words() const { return output_words; }

    /// sqrt(n) to p words, at the start of ctx.scratch, which holds total_bytes(): BufferTooSmallException
    /// "Sqrt_BigFloatR::run()" otherwise.
    lumo::BigFloat<wtype> run(const lumo::MultiplyContext& ctx, lumo::StatusNode& status) const;

 private:
    wtype n;
    lumo::InvsqrtWord_BigFloatR<wtype> root;
    lumo::upL_t output_words;
    lumo::upL_t bytes;
};

template <typename wtype>
class GoldenRatio_Newton_BigFloatR {
 public:
    /// `power` +1 gives phi, -1 gives 1 / phi; anything else throws InvalidParametersException
    /// "Power must be 1 or -1." at "GoldenRatio_Newton_BigFloatR()".
    GoldenRatio_Newton_BigFloatR(int power, lumo::upL_t p, lumo::upL_t tds);

    lumo::upL_t total_bytes() const { return root.total_bytes(); }
    lumo::upL_t max_product_words() const { return root.max_product_words(); }
    lumo::BigFloat<wtype> run(const lumo::MultiplyContext& ctx, lumo::StatusNode& status) const;

 private:
    int power;
    Sqrt_BigFloatR<wtype> root;
};

}  // namespace velmora
