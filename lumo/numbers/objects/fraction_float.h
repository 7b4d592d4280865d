/// Fractions at fixed point: the sum of T[i] 2^(W (i - L)), in [0, 1). A view: the words belong to someone
/// else. What leaves at the point is handed to the caller, so nothing is ever rounded.
#pragma once

#include "lumo/numbers/objects/big_float.h"
#include "lumo/numbers/words/double_word.h"

namespace lumo {

template <typename wtype>
struct FractionFloat {
    wtype* T = nullptr;
    upL_t L = 0;
    upL_t capacity = 0;

    FractionFloat() = default;
    FractionFloat(wtype* buffer, upL_t words) : T(buffer), capacity(words) {}

    /// The first `words` words after the point of |A|. BufferTooSmallException
    /// "FractionFloat::set_BigFloat()".
    void set_BigFloat(const BigFloat<wtype>& A, upL_t words) {
        require_capacity("FractionFloat::set_BigFloat()", capacity, words);
        L = words;
        A.read_window(T, -static_cast<spL_t>(words), words);
    }

    /// Times m^steps in place, of the words from `start` up; the words below it stay. What passes the point
    /// goes to digits[0 .. steps), first things first. The chains of carries of the steps are independent of
    /// each other, so that the processor works on several at once.
    template <unsigned steps>
    void mul_uW(wtype* digits, wtype m, upL_t start = 0) {
        wtype* const A = T;
        const upL_t end = L;
        wtype carry[steps] = {};
        for (upL_t i = start; i < end; i++) {
            wtype word = A[i];
            for (unsigned j = 0; j < steps; j++) {
                const DoubleWord<wtype> t = static_cast<DoubleWord<wtype>>(word) * m + carry[j];
                word = static_cast<wtype>(t);
                carry[j] = high_word<wtype>(t);
            }
            A[i] = word;
        }
        for (unsigned j = 0; j < steps; j++) digits[j] = carry[j];
    }
};

}  // namespace lumo
