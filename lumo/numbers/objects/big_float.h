/// Signed float with a truncating precision given at each call: the working number of all functions.
///
/// Value = sign x integer in T x 2^(W exp). A view: words belong to whoever cut [base, base + capacity).
/// A non-zero number has a non-zero top word; the bottom word may be zero. Zero has L = 0.
/// Positions are absolute word exponents; the top position is exp + L.
/// A precision p is words: results hold at most p + 2, operands are first cut (by pointer) to their top p + 2
/// words, lower words ignored, not rounded. The result may alias an operand only where said.
/// Every set_ checks capacity: BufferTooSmallException at its own name.
#pragma once

#include "lumo/foundation/types/double_double.h"
#include "lumo/multiply/multiply_context.h"
#include "lumo/numbers/objects/owned_number.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

template <typename wtype>
struct BasicInt;
template <typename wtype>
struct BigInt;
template <typename wtype>
struct ExactFloat;

template <typename wtype>
struct BigFloat {
    using signed_word = typename WordTraits<wtype>::signed_word;

    wtype* T = nullptr;
    upL_t L = 0;
    spL_t exp = 0;
    bool positive = true;
    wtype* base = nullptr;
    upL_t capacity = 0;

    BigFloat() = default;
    BigFloat(wtype* buffer, upL_t words) : T(buffer), base(buffer), capacity(words) {}

    bool is_zero() const { return L == 0; }
    int sign() const { return L == 0 ? 0 : positive ? 1 : -1; }
    spL_t top() const { return exp + static_cast<spL_t>(L); }
    upL_t bit_length() const;             ///< top position in bits; requires a non-zero integer part
    wtype word_at(spL_t position) const;  ///< 0 outside the number
    void clear();                         ///< zero, T at base
    void negate() { positive = !positive; }
    void check_normalization() const;
    /// The same words without the low ones: at most the top `words`.
    BigFloat cut(upL_t words) const;

    void set_word(wtype x);  ///< capacity 1
    void set_BigFloat(upL_t p, const BigFloat& A,
                      const ParallelContext& ctx = {});  ///< T may lie inside A's buffer below A.T
    void set_ExactFloat(const ExactFloat<wtype>& A, const ParallelContext& ctx = {});
    void set_BasicInt(const BasicInt<wtype>& A, const ParallelContext& ctx = {});
    void set_BigInt(const BigInt<wtype>& A, const ParallelContext& ctx = {});
    /// x 2^(W e); capacity 2 words of 64 bits, 3 of 32. x finite.
    void set_double(double x, spL_t e);
    /// A double in [2^-W, 1] x sign and the top position, from the top three words: value = result x 2^(W e).
    double get_double(spL_t& e) const;
    /// The same with a pair of doubles, |lo| at most half a unit of hi: its top 126 bits at least, from the
    /// top five words; capacity 128 bits and one word.
    void set_double_double(DoubleDouble x, spL_t e);
    DoubleDouble get_double_double(spL_t& e) const;

    static int ucmp(const BigFloat& A, const BigFloat& B);
    static int cmp(const BigFloat& A, const BigFloat& B);

    void mul_uW(wtype m, const ParallelContext& ctx = {});  ///< in place, one more word at the top
    void mp2(spL_t bits);                                   ///< times 2^bits, in place
    void set_mul_uW(upL_t p, const BigFloat& A, wtype m,
                    const ParallelContext& ctx = {});  ///< A cut to p + 1
    /// The same with a signed factor of 64 bits for either word type; one more word when |m| exceeds a word.
    void set_mul_sL(upL_t p, const BigFloat& A, spL_t m, const ParallelContext& ctx = {});
    /// Exactly p + 2 (or p + 1) words. m = 0: ArithmeticException "Divide by zero.". |m| below 2^(W-1), 1 or
    /// no power of two. T must not alias A.
    void set_div_sW(upL_t p, const ParallelContext& ctx, const BigFloat& A, signed_word m);

    /// Magnitude forms; at most p + 1 words below the larger top; results positive. T may alias neither
    /// operand.
    void set_uadd(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B);
    void set_usub(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B);  ///< |A| >= |B|
    void set_add(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B);
    void set_sub(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B);
    /// (A - B) modulo 2^(W top) on the L + 1 words that end at position `top`, with the sign given.
    void set_rsub(upL_t L, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B, spL_t top,
                  bool positive);
    void add_ip(wtype x, spL_t position);  ///< adds a word within [exp, exp + L], rippling

    /// Products; scratch in ctx sized by Multiply::partial_buffer_size / max_buffer_size(2 p + 6, tds). T
    /// must not overlap the operands. ExponentOverflowException when a position leaves 64 bits.
    void set_sqr(upL_t p, const MultiplyContext& ctx, const BigFloat& A);
    void set_mul(upL_t p, const MultiplyContext& ctx, const BigFloat& A, const BigFloat& B);
    void set_mul_small(upL_t p, const MultiplyContext& ctx, const BigFloat& A, const BigFloat& B);

    void truncate(upL_t p);               ///< to p + 2 words
    void truncate_above(spL_t position);  ///< keeps the words below position, renormalised
    void strip_lzs();                     ///< low zero words
    void strip_lzs_aligned();             ///< low zero words in multiples of the alignment unit
    void normalize_ones();                ///< a wrapped value just under one: drops top all-ones words
    void two_complement();                ///< negates the words in two's complement, renormalised
    /// Adds 1 at word k, rippling. All ones from word k up: the top grows by one word, and the k words below,
    /// which weigh nothing against it, go.
    void purturb_up(upL_t k);
    /// T[0 .. count) := the words at absolute positions offset .. offset + count - 1, zero outside.
    void read_window(wtype* out, spL_t offset, upL_t count, const ParallelContext& ctx = {}) const;

 private:
    struct ProductCut;
    void set_scaled(const char* location, unsigned __int128 magnitude, spL_t e, int bits, bool is_positive);
    void set_signed_sum(upL_t p, const ParallelContext& ctx, const BigFloat& A, const BigFloat& B,
                        bool B_positive);
    void accept_product(const char* location, const ProductCut& product);
    void append_word(const char* location, wtype word);
    void drop_low(upL_t words);
    void drop_top_ones();
    void drop_top_zeros();
};

template <typename wtype>
class BigFloatO final : public OwnedNumber<BigFloat, wtype> {
 public:
    using OwnedNumber<BigFloat, wtype>::OwnedNumber;
};

}  // namespace lumo
