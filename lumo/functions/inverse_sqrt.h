/// Inverse square roots by Newton iteration: of a big float, and of one word.
/// Source: Karp and Markstein, "High-precision division and square root" (1997).
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/numbers/objects/big_float.h"

namespace lumo {

template <typename wtype>
struct InvsqrtFloat_BigFloatR {
    upL_t p;
    upL_t tds;
    upL_t output_words;
    upL_t word_scratch;
    upL_t byte_scratch;
    InvsqrtFloat_BigFloatR(upL_t p, upL_t tds);
    upL_t total() const;
    /// T := 1 / sqrt(x) to `precision` <= p words. T must not alias x. ArithmeticException "Divide by zero." or
    /// "Square root of negative number.".
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, const BigFloat<wtype>& x,
             upL_t precision, wtype* words, upL_t word_count) const;
};

template <typename wtype>
struct InvsqrtWord_BigFloatR {
    upL_t p;
    upL_t tds;
    upL_t output_words;
    upL_t word_scratch;
    upL_t byte_scratch;
    InvsqrtWord_BigFloatR(upL_t p, upL_t tds);
    upL_t total() const;
    void run(const MultiplyContext& ctx, StatusNode& status, BigFloat<wtype>& T, wtype x, upL_t precision,
             wtype* words, upL_t word_count) const;
};

}  // namespace lumo
