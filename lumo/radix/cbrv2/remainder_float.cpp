#include "lumo/radix/cbrv2/remainder_float.h"

#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/basecase/basecase.h"
#include "lumo/radix/cbrv2/fraction_view.h"

namespace lumo {

template <typename wtype>
void RemainderFloatB<wtype>::set_inverse_fmul(const TransformHelper<wtype>& helper, Number& T,
                                              const Number& A, const Power& F, upL_t words) {
    const char* const location = "RemainderFloatB::set_inverse_fmul()";
    // A word at -F.exp or above gives an integer, whatever it meets.
    const Number active = words_between(A, A.exp, -F.exp());
    if (active.is_zero()) return T.clear();
    const spL_t lowest = -static_cast<spL_t>(words);
    Power::mul_rf_xf(helper, T, lowest, 0, active, F);
    check(location, T, lowest, active.exp + F.exp());
}

template <typename wtype>
void RemainderFloatB<wtype>::set_mul_small(const TransformHelper<wtype>& helper, Number& T, const Number& A,
                                           const Number& F, upL_t words) {
    const Number active = words_between(A, A.exp, -F.exp);
    if (active.is_zero()) return T.clear();
    const spL_t lowest = -static_cast<spL_t>(words);
    Power::mul_rr_xx(helper, T, lowest, 0, active, F);
    check("RemainderFloatB::set_mul_small()", T, lowest, active.exp + F.exp);
}

template <typename wtype>
void RemainderFloatB<wtype>::set_direct(Number& T, const Number& A, const Number& F) {
    const Number active = words_between(A, A.exp, -F.exp);
    if (active.is_zero()) return T.clear();
    require_capacity("RemainderFloatB::set_direct()", T.capacity, active.L + F.L);
    Basecase::mulB(T.T, active.T, active.L, F.T, F.L);
    T.L = active.L + F.L;
    T.exp = active.exp + F.exp;
    T = words_between(T, T.exp, 0);
}

template <typename wtype>
void RemainderFloatB<wtype>::check(const char* location, const Number& T, spL_t lowest,
                                   spL_t product_bottom) {
    if (T.is_zero()) return;
    if (!T.positive) throw AlgorithmFailedException(location, "Unexpected: tmag < 0");
    if (T.top() > 0 || T.exp > std::max(lowest, product_bottom))
        throw AlgorithmFailedException(location, "Truncated Range");
}

template struct RemainderFloatB<std::uint32_t>;
template struct RemainderFloatB<std::uint64_t>;

}  // namespace lumo
