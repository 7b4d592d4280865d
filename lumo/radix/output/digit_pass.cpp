#include "lumo/radix/output/digit_pass.h"

#include <algorithm>
#include <mutex>

#include "lumo/foundation/digest/sha2.h"
#include "lumo/numbers/words/hash61.h"

namespace lumo {

upL_t DigitPass::scratch_bytes(upL_t block_words) {
    return 2 * align_bytes(block_words * 19);
}

void DigitPass::run(RadixReport& report, DigitViewer2::BasicDigitWriter* writer, StatusNode& status,
                    const ParallelContext& ctx, AlignedBufferC scratch) const {
    const upL_t D = packing.digits_per_word;
    const upL_t block_digits = block_words * D;
    char* texts[2] = {static_cast<char*>(scratch.spawn(block_words * D)),
                      static_cast<char*>(scratch.spawn(block_words * D))};
    const auto progress = status.make_iteration(digits);
    Sha256 digest;

    const auto length_at = [&](upL_t start) { return std::min(block_digits, digits - start); };
    const auto format_at = [&](upL_t start) {
        format(report, texts[start / block_digits % 2], start / D, length_at(start), ctx);
    };
    const auto digest_at = [&](upL_t start) {
        digest.update(texts[start / block_digits % 2], length_at(start));
    };
    const auto write_and_format_next = [&](upL_t start) {
        if (writer) writer->write_text(ctx, texts[start / block_digits % 2], start, length_at(start));
        progress->complete(length_at(start));
        if (start + block_digits < digits) format_at(start + block_digits);
    };
    report.digits = digits;
    if (digits != 0) format_at(0);
    for (upL_t start = 0; start < digits; start += block_digits) {
        if (ctx.tds > 1)
            parallel_invoke(
                *ctx.parallelizer, [&] { write_and_format_next(start); }, [&] { digest_at(start); });
        else
            digest_at(start), write_and_format_next(start);
    }
    report.hash = Hash61::canonical(report.hash);
    report.sha256 = to_hex(digest.final());
}

/// Text of `count` digits from a word on, which are counted and hashed; the last block may end within a word.
void DigitPass::format(RadixReport& report, char* text, upL_t first_word, upL_t count,
                       const ParallelContext& ctx) const {
    constexpr upL_t SMALLEST_PIECE = 2048;
    const upL_t D = packing.digits_per_word;
    const upL_t words = (count + D - 1) / D;
    const upL_t pieces = std::clamp<upL_t>(words / SMALLEST_PIECE, 1, std::max<upL_t>(ctx.tds, 1));
    const upL_t piece_words = words / pieces + 1;
    std::mutex merging;
    parallel_for(*ctx.parallelizer, 0, pieces, [&](upL_t i) {
        const upL_t from = std::min(i * piece_words, words);
        const upL_t to = std::min(from + piece_words, words);
        words_to_text(packing, text + from * D, words_end - first_word - from, to - from);
        DigitCounts counts(packing.radix);
        counts.add(text + from * D, std::min(to * D, count) - from * D);
        const std::lock_guard lock(merging);
        report.counts += counts;
    });
    report.hash = hash(report.hash, first_word, count, ctx);
}

std::uint64_t DigitPass::hash(std::uint64_t seed, upL_t first_word, upL_t count,
                              const ParallelContext& ctx) const {
    const upL_t full = count / packing.digits_per_word;
    const std::uint64_t* end = words_end - first_word - full;
    const std::uint64_t h = bp_hash_radix<std::uint64_t>(seed, packing.residue, end, full, ctx);
    const upL_t rest = count % packing.digits_per_word;
    if (rest == 0) return h;
    std::uint64_t unit = 1;
    for (upL_t i = rest; i < packing.digits_per_word; i++) unit *= packing.radix;
    return Hash61::add(Hash61::mul(h, Hash61::pow(packing.radix, rest)), end[-1] / unit);
}

}  // namespace lumo
