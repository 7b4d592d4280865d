/// The serial loops of sums and differences, for callers that know that their arrays are short.
#pragma once

#include <immintrin.h>

#include "lumo/numbers/words/blocks.h"

namespace lumo {

/// Where a carry intrinsic leaves its digit. To the compiler the intrinsic writes to memory of no known type,
/// so this may be two words of 32 bits at any alignment; a detour through a variable would cost a second
/// store.
template <typename wtype>
unsigned long long* carry_target(wtype* T) {
    return reinterpret_cast<unsigned long long*>(T);
}

/// The steps of a sum: 64 bits, and one word of 32.
struct CarrySum {
    static constexpr int SIGN = 1;
    template <typename wtype>
    static unsigned char step(unsigned char carry, const wtype* A, const wtype* B, wtype* T) {
        return _addcarry_u64(carry, load_u64(A), load_u64(B), carry_target(T));
    }
    static unsigned char single(unsigned char carry, std::uint32_t a, std::uint32_t b, std::uint32_t* T) {
        return _addcarry_u32(carry, a, b, T);
    }
};

struct CarryDifference {
    static constexpr int SIGN = -1;
    template <typename wtype>
    static unsigned char step(unsigned char borrow, const wtype* A, const wtype* B, wtype* T) {
        return _subborrow_u64(borrow, load_u64(A), load_u64(B), carry_target(T));
    }
    static unsigned char single(unsigned char borrow, std::uint32_t a, std::uint32_t b, std::uint32_t* T) {
        return _subborrow_u32(borrow, a, b, T);
    }
};

/// Works on 64 bits at a time for both word types, unrolled so that the carry stays in its flag.
template <typename Op, typename wtype>
inline unsigned char run_carry_loop(wtype* T, const wtype* A, const wtype* B, upL_t L, unsigned char carry) {
    constexpr upL_t step = 8 / sizeof(wtype);
    upL_t i = 0;
    for (; i + 8 * step <= L; i += 8 * step) {
        carry = Op::step(carry, A + i, B + i, T + i);
        carry = Op::step(carry, A + i + step, B + i + step, T + i + step);
        carry = Op::step(carry, A + i + 2 * step, B + i + 2 * step, T + i + 2 * step);
        carry = Op::step(carry, A + i + 3 * step, B + i + 3 * step, T + i + 3 * step);
        carry = Op::step(carry, A + i + 4 * step, B + i + 4 * step, T + i + 4 * step);
        carry = Op::step(carry, A + i + 5 * step, B + i + 5 * step, T + i + 5 * step);
        carry = Op::step(carry, A + i + 6 * step, B + i + 6 * step, T + i + 6 * step);
        carry = Op::step(carry, A + i + 7 * step, B + i + 7 * step, T + i + 7 * step);
    }
    for (; i + step <= L; i += step) carry = Op::step(carry, A + i, B + i, T + i);
    if constexpr (step == 2)
        if (i < L) carry = Op::single(carry, A[i], B[i], T + i);
    return carry;
}

}  // namespace lumo
