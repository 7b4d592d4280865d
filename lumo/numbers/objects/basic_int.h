/// Positive integers that carry their own hash modulo 2^61 - 1. A view: the words belong to someone else.
///
/// Never zero when in use; the top word is not zero. The hash of a result is derived from the operands'
/// hashes alone. Every set_ checks capacity: BufferTooSmallException at its name. T must not overlap an
/// operand, except in set_add and set_sub, where it may start at the same word.
#pragma once

#include <string>

#include "lumo/foundation/memory/aligned_malloc.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

template <typename wtype>
struct BasicInt {
    wtype* T = nullptr;
    upL_t L = 0;
    upL_t capacity = 0;
    std::uint64_t hash = 0;

    BasicInt() = default;
    BasicInt(wtype* buffer, upL_t words) : T(buffer), capacity(words) {}

    /// Room for another number in the same words, from word n up.
    BasicInt room_above(upL_t n) const { return BasicInt(T + n, capacity - n); }

    void set_BasicInt(const BasicInt& A);
    void set_add(const BasicInt& A, const BasicInt& B);  ///< capacity: longer L + 1
    /// A > B: else UnsupportedNegativeException "A negative value was encountered." or
    /// UnsupportedZeroException "Zero was encountered.".
    void set_sub(const BasicInt& A, const BasicInt& B);
    BasicInt& operator+=(const BasicInt& B);
    BasicInt& operator-=(const BasicInt& B);  ///< as set_sub; capacity L + 1

    /// Schoolbook products.
    void set_sqrB(const BasicInt& A);
    void set_mulB(const BasicInt& A, const BasicInt& B);

    std::uint64_t computed_hash(const ParallelContext& ctx = {}) const { return bp_hash(0, T, L, ctx); }
    void update_hash(const ParallelContext& ctx = {}) { hash = computed_hash(ctx); }
    /// Decimal, by repeated division. For short display: beyond 10,000 words it prints a warning and goes on.
    std::string to_string() const;
    /// Stored minus computed, canonical: 0 means consistent.
    std::uint64_t hash_error(const ParallelContext& ctx = {}) const {
        return Hash61::canonical(Hash61::sub(hash, computed_hash(ctx)));
    }

 private:
    void add_to(const char* location, const BasicInt& A, const BasicInt& B);
};

/// Owns its words on the general allocator, with some to spare. UnsupportedZeroException
/// "BasicIntO::BasicIntO()" for a zero.
template <typename wtype>
class BasicIntO final : public BasicInt<wtype> {
 public:
    explicit BasicIntO(const BasicInt<wtype>& A);
    explicit BasicIntO(std::uint64_t x);
    BasicIntO(const wtype* words, upL_t n);  ///< top words may be zero
    BasicIntO(BasicIntO&& other) noexcept;
    BasicIntO& operator=(BasicIntO&& other) noexcept;
    BasicIntO(const BasicIntO&) = delete;
    BasicIntO& operator=(const BasicIntO&) = delete;
    ~BasicIntO() = default;

 private:
    AlignedPtr<wtype> owned;
};

}  // namespace lumo
