#include "digitviewer/viewer/copy_digits.h"

#include <algorithm>

#include "lumo/foundation/memory/aligned_malloc.h"

namespace DigitViewer2 {

namespace {

/// Whole words of both radixes, so that blocks of a single file are packed without a partial word.
constexpr upL_t BLOCK_DIGITS = upL_t(19) * 16 * 8192;

}  // namespace

void copy_digits(BasicDigitReader& reader, BasicDigitWriter& writer, upL_t from, upL_t to,
                 const lumo::ParallelContext& ctx, lumo::StatusNode& status) {
    const auto progress = status.make_iteration(to - from);
    const upL_t block = std::min(BLOCK_DIGITS, to - from);
    const auto values = lumo::make_aligned<char>(2 * std::max<upL_t>(block, 1));
    const auto half = [&](upL_t start) { return values.get() + (start - from) / block % 2 * block; };
    const auto length = [&](upL_t start) { return std::min(block, to - start); };
    const auto read_at = [&](upL_t start) {
        reader.read(ctx, half(start), static_cast<lumo::spL_t>(start), length(start));
    };
    const auto write_at = [&](upL_t start) {
        writer.write(ctx, half(start), start, length(start));
        progress->complete(length(start));
    };
    if (from < to) read_at(from);
    for (upL_t start = from; start < to; start += block) {
        const upL_t next = start + block;
        if (next >= to) {
            write_at(start);
        } else if (ctx.tds > 1) {
            lumo::parallel_invoke(
                *ctx.parallelizer, [&] { read_at(next); }, [&] { write_at(start); });
        } else {
            write_at(start);
            read_at(next);
        }
    }
}

}  // namespace DigitViewer2
