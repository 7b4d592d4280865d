/// Loops over plain arrays of words, the bottom of the number library.
///
/// A number is a little-endian array of unsigned words. Lengths are words unless named bytes; a length of 0
/// is allowed where nothing else is said. T may be equal to an operand's pointer; other overlaps are not
/// allowed. Routines with a context cut long arrays into blocks for it; (1, any) runs in the caller's thread.
/// Words never depend on the context, hashes by no more than the modulus. Nothing allocates.
#pragma once

#include <cstring>

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo {

/// Most blocks that a routine with carries between blocks cuts into: their records live on the stack.
inline constexpr upL_t BP_MAX_BLOCKS = 64;

/// Words from `T` up to the next 128-byte boundary.
template <typename wtype>
upL_t bp_prefix(const wtype* T) {
    return (upL_t(0) - reinterpret_cast<upL_t>(T) / sizeof(wtype)) % WordTraits<wtype>::align_words;
}

template <typename wtype>
void bp_zero(wtype* T, upL_t L, const ParallelContext& ctx = {});
template <typename wtype>
void bp_fill(wtype* T, upL_t L, wtype value, const ParallelContext& ctx = {});
/// Copies bytes, with non-temporal stores from 1,048,576 bytes up. Overlap is allowed only when T is below A
/// and the copy is short enough to run serially (use bp_move otherwise).
void bp_copy_bytes(void* T, const void* A, upL_t bytes, const ParallelContext& ctx = {});
template <typename wtype>
void bp_copy(wtype* T, const wtype* A, upL_t L, const ParallelContext& ctx = {}) {
    bp_copy_bytes(T, A, L * sizeof(wtype), ctx);
}
/// Overlap of any kind is allowed.
template <typename wtype>
void bp_move(wtype* T, const wtype* A, upL_t L) {
    if (L != 0) std::memmove(T, A, L * sizeof(wtype));
}
/// T := ones' complement of A.
template <typename wtype>
void bp_not(wtype* T, const wtype* A, upL_t L, const ParallelContext& ctx = {});
/// The largest n <= L with A[n - 1] != value, 0 if none.
template <typename wtype>
upL_t bp_strip(wtype value, const wtype* A, upL_t L, const ParallelContext& ctx = {});

/// T := A + B + (carry != 0) over L words; returns the carry out (0 or 1).
template <typename wtype>
wtype bp_add(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype carry, const ParallelContext& ctx = {});
/// T := A - B - (borrow != 0) over L words; returns the borrow out (0 or 1).
template <typename wtype>
wtype bp_sub(wtype* T, const wtype* A, const wtype* B, upL_t L, wtype borrow,
             const ParallelContext& ctx = {});
/// Adds the signed word c at word 0 and ripples; returns +1, -1 or 0. c = 0 or L = 0 returns c untouched.
template <typename wtype>
typename WordTraits<wtype>::signed_word bp_add_scalar(typename WordTraits<wtype>::signed_word c, wtype* T,
                                                      upL_t L, const ParallelContext& ctx = {});
/// T := A m + c over L words; returns the top word.
template <typename wtype>
wtype bp_mul_uW(wtype* T, const wtype* A, upL_t L, wtype m, wtype c, const ParallelContext& ctx = {});
/// T := A shifted left by `bits` (0 <= bits < W) over L words; returns the bits shifted out at the top.
template <typename wtype>
wtype bp_shift_left(wtype* T, const wtype* A, upL_t L, unsigned bits);
/// T := A shifted right by `bits` (0 <= bits < W) over L words, zeros entering at the top.
template <typename wtype>
void bp_shift_right(wtype* T, const wtype* A, upL_t L, unsigned bits);
/// -1, 0, +1 as A < B, A = B, A > B over L words.
template <typename wtype>
int bp_compare(const wtype* A, const wtype* B, upL_t L);

/// Adds the signed word c, ripples as far as it goes and classifies the array after the addition. Low byte:
/// 0 all words zero, 255 all words all ones, 128 otherwise; high byte: the signed carry out. Reads no further
/// than the class and the carry need. L = 0 throws InvalidParametersException.
template <typename wtype>
std::uint16_t bp_ksr_carry(typename WordTraits<wtype>::signed_word c, wtype* T, upL_t L,
                           const ParallelContext& ctx = {});

/// The value of the array modulo 2^61 - 1 with the seed h as higher words, not necessarily fully reduced.
template <typename wtype>
std::uint64_t bp_hash(std::uint64_t h, const wtype* A, upL_t L, const ParallelContext& ctx = {});
/// The same with radix r in place of 2^W.
template <typename wtype>
std::uint64_t bp_hash_radix(std::uint64_t h, std::uint64_t r, const wtype* A, upL_t L,
                            const ParallelContext& ctx = {});
/// Writes a deterministic test pattern and returns its hash.
template <typename wtype>
std::uint64_t bp_fill_test(wtype* T, upL_t L, wtype seed, const ParallelContext& ctx = {});

}  // namespace lumo
