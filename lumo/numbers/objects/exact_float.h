/// Exact signed float that carries its own hash modulo 2^61 - 1: the number of the series engine.
///
/// Value = sign x integer in T x 2^(W exp); T moves inside [base, base + capacity). The hash of a result is
/// derived from the operands' hashes alone; hash_error() reads the words and tells a fault.
/// Zero: L = 0, exp = 0, positive, hash 0 modulo the prime. set_ operations check capacity
/// (BufferTooSmallException at their name); T must not overlap an operand.
#pragma once

#include "lumo/multiply/multiply_context.h"
#include "lumo/numbers/objects/owned_number.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

template <typename wtype>
struct BasicInt;

template <typename wtype>
struct ExactFloat {
    wtype* T = nullptr;
    upL_t L = 0;
    spL_t exp = 0;
    bool positive = true;
    std::uint64_t hash = 0;
    wtype* base = nullptr;
    upL_t capacity = 0;

    ExactFloat() = default;
    ExactFloat(wtype* buffer, upL_t words) : T(buffer), base(buffer), capacity(words) {}

    bool is_zero() const { return L == 0; }
    spL_t top() const { return exp + static_cast<spL_t>(L); }
    spL_t Tmin() const { return exp - (T - base); }
    spL_t Tmax() const { return Tmin() + static_cast<spL_t>(capacity); }
    wtype word_at(spL_t position) const;
    void clear();
    /// Zero with the hash that follows from the operands' hashes: not 0 if a fault has made one of them zero.
    void clear_keeping(std::uint64_t evidence);

    void set_BasicInt(const BasicInt<wtype>& A, bool positive);
    void set_ExactFloat(const ExactFloat& A, const ParallelContext& ctx = {});
    void mp2(spL_t bits);
    void mp2_noupdate(spL_t bits);  ///< the same, hash left alone
    /// T := A m + c 2^(W exp) on the magnitude. m = 0 clears.
    void muladd_uW(wtype m, wtype c, const ParallelContext& ctx = {});
    void set_muladd_uW(const ExactFloat& A, wtype m, wtype c, const ParallelContext& ctx = {});

    /// In place, signed. The buffer must reach down to B's bottom and up to the result's top:
    /// InvalidParametersException "Amag >= Tmax", "Bmag >= Tmax", "Amag > Tmax", "Bmag > Tmax", "Bexp <
    /// Tmin".
    void add(const ExactFloat& B, const ParallelContext& ctx = {});
    void sub(const ExactFloat& B, const ParallelContext& ctx = {});
    void set_add(const ExactFloat& A, const ExactFloat& B, const ParallelContext& ctx = {});  ///< equal signs
    void set_sub(const ExactFloat& A, const ExactFloat& B,
                 const ParallelContext& ctx = {});  ///< |A| > |B|, equal signs

    /// Products; ctx.scratch holds Multiply::max_buffer_size(AL + BL, tds).
    void set_sqr(const MultiplyContext& ctx, const ExactFloat& A);
    void set_mul(const MultiplyContext& ctx, const ExactFloat& A, const ExactFloat& B);
    /// As set_mul, with the product's bottom at exponent `emin` (zero-filled below) when it lies above it.
    void set_mul_extend(const MultiplyContext& ctx, const ExactFloat& A, const ExactFloat& B, spL_t emin);
    /// The same in the form that needs the least memory: ctx.scratch holds Multiply::max_buffer_size(AL + BL,
    /// tds, true). For products beyond the basecase T may overlap the operands.
    void set_mul_small(const MultiplyContext& ctx, const ExactFloat& A, const ExactFloat& B, spL_t emin);

    void strip_lzs();
    void strip_lzs_aligned();  ///< by multiples of the alignment unit
    void negate();

    std::uint64_t computed_hash(const ParallelContext& ctx = {}) const;  ///< from words, exponent and sign
    void update_hash(const ParallelContext& ctx = {}) { hash = computed_hash(ctx); }
    /// Stored minus computed, canonical: 0 means consistent.
    std::uint64_t hash_error(const ParallelContext& ctx = {}) const {
        return Hash61::canonical(Hash61::sub(hash, computed_hash(ctx)));
    }

 private:
    upL_t room() const { return capacity - static_cast<upL_t>(T - base); }
    void shift_left(const char* location, unsigned bits);
    void muladd_words(const char* location, const wtype* words, wtype m, wtype c, const ParallelContext& ctx);
    void drop_low(upL_t words);
    void place_product(const char* location, const MultiplyContext& ctx, const ExactFloat& A,
                       const ExactFloat& B, upL_t zeros);
    void extend_down(const char* location, spL_t bottom);
    void join_ip(const ExactFloat& B, bool subtract, const ParallelContext& ctx);
    void ripple(upL_t from, typename WordTraits<wtype>::signed_word carry, const ParallelContext& ctx);
    void settle_difference(const ParallelContext& ctx);
    void uaddAB_ip(const ExactFloat& B, const ParallelContext& ctx);
    void uaddBA_ip(const ExactFloat& B, const ParallelContext& ctx);
    void usubAB_ip(const ExactFloat& B, const ParallelContext& ctx);
    void usubBA_ip(const ExactFloat& B, const ParallelContext& ctx);
};

template <typename wtype>
class ExactFloatO final : public OwnedNumber<ExactFloat, wtype> {
 public:
    using OwnedNumber<ExactFloat, wtype>::OwnedNumber;
};

}  // namespace lumo
