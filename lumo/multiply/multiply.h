/// Products of word arrays of any size: walks the table of thresholds of the word type and calls the
/// algorithm of the first row that is long enough. The scratch comes with the context and is sized before
/// by max_buffer_size() and its kin; too little is BufferTooSmallException, and a product beyond all rows
/// LimitExceededException. Operands have at least one word; T overlaps none of them unless said. Exact, but
/// for what mul_partial() leaves out.
#pragma once

#include "lumo/multiply/basic_algorithm.h"

namespace lumo::Multiply {

/// T[0 .. 2 L) := A^2.
template <typename wtype>
void sqr(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t L);
/// T[0 .. AL + BL) := A B.
template <typename wtype>
void mul(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL, const wtype* B, upL_t BL);
/// T[0 .. L - s) := words [s, L) of the square, nothing when s >= L; L <= 2 AL. Leaves out what mul_partial()
/// does.
template <typename wtype>
void sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL);
/// T[0 .. L - s) := words [s, L) of the product, nothing when s >= L; L <= AL + BL. Words of the operands
/// that touch only discarded low words are left out, so word 0 of T may fall short of the true one by the few
/// carries that they would have brought.
template <typename wtype>
void mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                 const wtype* B, upL_t BL);
/// As mul_partial(), in the form that needs the least scratch: max_buffer_size() with `small`. Of a product
/// by transform T may overlap the operands.
template <typename wtype>
void mul_small(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
               const wtype* B, upL_t BL);

/// The algorithm for products of `length` words. Throws LimitExceededException beyond all rows.
template <typename wtype>
const BasicAlgorithm<wtype>& get_algorithm(upL_t length);
/// The transform for products of `length` words, or a little longer.
template <typename wtype>
void params(TransformHolder<wtype>& out, upL_t length, upL_t tds);

/// Bytes for every product of at most `length` words: maxima piece by piece into `sizes`, the largest total
/// as the result; with `small` that for mul_small().
template <typename wtype>
upL_t max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds);
template <typename wtype>
upL_t max_buffer_size(upL_t length, upL_t tds, bool small = false);
/// Scratch that a partial product of operands of AL and BL words cut to p + 2 result words needs.
template <typename wtype>
upL_t partial_buffer_size(upL_t p, upL_t AL, upL_t BL, upL_t tds);

/// Longest product in words that any row can make.
template <typename wtype>
upL_t max_length();

/// Twiddle tables, shared by both word types: bytes for products up to `bits`, and their construction in a
/// buffer that the caller keeps alive until release_tables(). Tables made so replace those of
/// ensure_tables(). Not thread-safe: before work starts, after it ends.
upL_t table_bytes(upL_t bits);
void build_tables(AlignedBufferC buffer, upL_t bits, const ParallelContext& ctx);
void release_tables();
/// Tables on the general allocator, for work outside a session (tests, small helpers).
void ensure_tables(upL_t bits);

}  // namespace lumo::Multiply
