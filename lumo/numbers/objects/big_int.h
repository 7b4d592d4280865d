/// Signed integers without a hash, over words that belong to whoever cut [base, base + capacity).
///
/// Zero has L = 0; the top word of another number is not zero. Every set_ checks capacity:
/// BufferTooSmallException at its name. T must not overlap an operand unless said.
#pragma once

#include "lumo/multiply/multiply_context.h"
#include "lumo/numbers/objects/owned_number.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

template <typename wtype>
struct BasicInt;
template <typename wtype>
struct BigFloat;

template <typename wtype>
struct BigInt {
    wtype* T = nullptr;
    upL_t L = 0;
    bool positive = true;
    wtype* base = nullptr;
    upL_t capacity = 0;

    BigInt() = default;
    BigInt(wtype* buffer, upL_t words) : T(buffer), base(buffer), capacity(words) {}

    bool is_zero() const { return L == 0; }
    int sign() const { return L == 0 ? 0 : positive ? 1 : -1; }
    upL_t bit_length() const;  ///< of the magnitude, 0 for zero
    void clear();
    void negate() { positive = !positive; }
    void check_normalization() const;

    void set_word(wtype x);
    void set_BasicInt(const BasicInt<wtype>& A);
    void set_BigInt(const BigInt& A, const ParallelContext& ctx = {});
    /// The integer part, truncated towards zero.
    void set_BigFloat(const BigFloat<wtype>& A, const ParallelContext& ctx = {});

    static int ucmp(const BigInt& A, const BigInt& B);
    static int cmp(const BigInt& A, const BigInt& B);

    /// Signed; T may be A's or B's words. Capacity: longer L + 1 when magnitudes add, longer L when they
    /// subtract.
    void set_add(const BigInt& A, const BigInt& B, const ParallelContext& ctx = {});
    void set_sub(const BigInt& A, const BigInt& B, const ParallelContext& ctx = {});
    void add_ip(wtype x, upL_t position);  ///< adds a word within [0, L] of a non-zero number, rippling

    BigInt& operator<<=(upL_t bits);
    BigInt& operator>>=(upL_t bits);  ///< magnitude, towards zero

    void mul_uW(wtype m, const ParallelContext& ctx = {});  ///< in place; capacity L + 1
    void set_mul_uW(const BigInt& A, wtype m, const ParallelContext& ctx = {});
    /// Products; ctx.scratch holds Multiply::max_buffer_size(AL + BL, tds).
    void set_sqr(const MultiplyContext& ctx, const BigInt& A);
    void set_mul(const MultiplyContext& ctx, const BigInt& A, const BigInt& B);

 private:
    void set_signed_sum(const BigInt& A, const BigInt& B, bool B_positive, const ParallelContext& ctx);
    void uadd(const BigInt& A, const BigInt& B, const ParallelContext& ctx);
    void usub(const BigInt& A, const BigInt& B, const ParallelContext& ctx);
};

template <typename wtype>
class BigIntO final : public OwnedNumber<BigInt, wtype> {
 public:
    using OwnedNumber<BigInt, wtype>::OwnedNumber;
};

}  // namespace lumo
