/// Digits between their text and their values, in place or not, a block at a time on all threads.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace DigitViewer2 {

using lumo::upL_t;

/// Calls f(start, end) for pieces of [0, count), several at a time where the count and the context allow it.
template <typename F>
void for_pieces(const lumo::ParallelContext& ctx, upL_t count, F&& f, upL_t smallest_piece = 1 << 16) {
    const upL_t most = count / smallest_piece;
    const upL_t pieces = most < ctx.tds ? most : ctx.tds;
    if (pieces < 2) {
        f(upL_t(0), count);
        return;
    }
    const upL_t length = count / pieces + 1;
    lumo::parallel_for(*ctx.parallelizer, 0, pieces, [&](upL_t i) {
        const upL_t start = i * length < count ? i * length : count;
        f(start, count - start < length ? count : start + length);
    });
}

/// out[i] := value of the character text[i], upper-case hexadecimal accepted. False if one is no digit of the
/// radix (10 or 16). `out` may be `text`.
bool values_of_text(upL_t radix, char* out, const char* text, upL_t count);
/// The inverse, lower-case. False if a value is not below the radix.
bool text_of_values(upL_t radix, char* out, const char* values, upL_t count);

}  // namespace DigitViewer2
