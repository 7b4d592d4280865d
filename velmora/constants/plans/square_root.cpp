#include "velmora/constants/plans/square_root.h"

#include "lumo/foundation/errors/exceptions.h"

namespace velmora {

using lumo::AlignedBufferC;
using lumo::BigFloat;
using lumo::MultiplyContext;
using lumo::StatusNode;
using lumo::StatusSection;
using lumo::upL_t;

template <typename wtype>
Sqrt_BigFloatR<wtype>::Sqrt_BigFloatR(wtype n_, upL_t p, upL_t tds)
    : n(n_), root(p + 2, tds), output_words(lumo::align_words<wtype>(root.output_words + 1)) {
    bytes = lumo::align_bytes((output_words + lumo::align_words<wtype>(root.word_scratch)) * sizeof(wtype) +
                              root.byte_scratch);
}

template <typename wtype>
BigFloat<wtype> Sqrt_BigFloatR<wtype>::run(const MultiplyContext& ctx, StatusNode& status) const {
    lumo::require_capacity("Sqrt_BigFloatR::run()", ctx.scratch_bytes, bytes);
    AlignedBufferC buffer = ctx.buffer();
    BigFloat<wtype> T(buffer.spawn_words<wtype>(output_words), output_words);
    {
        StatusSection section(status, {{'G', "Large Invsqrt...  "}});
        wtype* words = buffer.spawn_words<wtype>(root.word_scratch);
        root.run(ctx.with_scratch(buffer), status, T, n, root.p, words, root.word_scratch);
    }
    StatusSection section(status, {{'G', "Finishing...  "}});
    T.mul_uW(n, ctx.parallel());
    return T;
}

template <typename wtype>
GoldenRatio_Newton_BigFloatR<wtype>::GoldenRatio_Newton_BigFloatR(int power_, upL_t p, upL_t tds)
    : power(power_), root(5, p, tds) {
    if (power != 1 && power != -1)
        throw lumo::InvalidParametersException("GoldenRatio_Newton_BigFloatR()", "Power must be 1 or -1.");
}

template <typename wtype>
BigFloat<wtype> GoldenRatio_Newton_BigFloatR<wtype>::run(const MultiplyContext& ctx,
                                                         StatusNode& status) const {
    BigFloat<wtype> T = root.run(ctx, status);
    // sqrt(5) +- 1 changes the word of the units alone, whose value is 2.
    lumo::require(T.top() == 1 && T.T[T.L - 1] == 2, "The root of five is wrong.",
                  "GoldenRatio_Newton_BigFloatR::run()");
    T.T[T.L - 1] = power == 1 ? 3 : 1;
    // Half of it without a shift of bits.
    --T.exp;
    T.mul_uW(wtype(1) << (lumo::WordTraits<wtype>::bits - 1), ctx.parallel());
    return T;
}

template class Sqrt_BigFloatR<std::uint32_t>;
template class Sqrt_BigFloatR<std::uint64_t>;
template class GoldenRatio_Newton_BigFloatR<std::uint32_t>;
template class GoldenRatio_Newton_BigFloatR<std::uint64_t>;

}  // namespace velmora
