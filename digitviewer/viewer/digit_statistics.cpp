#include "digitviewer/viewer/digit_statistics.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "digitviewer/files/digit_text.h"
#include "digitviewer/files/packed_reader.h"
#include "lumo/foundation/memory/aligned_malloc.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/radix/hashed_digits.h"

namespace DigitViewer2 {

namespace {

/// Words of a piece: enough that its tables are cheap.
constexpr upL_t PIECE_WORDS = 1 << 17;
/// Words on the stack of a thread.
constexpr upL_t STEP_WORDS = 2048;
/// Shorter runs are counted digit by digit.
constexpr upL_t FEW_WORDS = 2048;

/// Counts words that come by `fetch(words, first, count)`, which several threads may call: whole words
/// [0, count) in pieces, at most PIECE_WORDS each.
template <typename Fetch>
DigitStatistics count_words(const WordPacking& packing, upL_t count, const lumo::ParallelContext& ctx,
                            const Fetch& fetch) {
    const upL_t pieces = (count + PIECE_WORDS - 1) / PIECE_WORDS;
    std::vector<DigitStatistics> parts(pieces, DigitStatistics(packing.radix));
    const auto count_piece = [&](upL_t piece) {
        WordCounter counter(packing);
        std::uint64_t words[STEP_WORDS];
        const upL_t end = std::min(count, (piece + 1) * PIECE_WORDS);
        for (upL_t at = piece * PIECE_WORDS; at < end; at += STEP_WORDS) {
            const upL_t length = std::min(STEP_WORDS, end - at);
            fetch(words, at, length);
            counter.add(words, length);
        }
        parts[piece] = counter.statistics();
    };
    if (ctx.tds > 1)
        lumo::parallel_for(*ctx.parallelizer, 0, pieces, count_piece);
    else
        for (upL_t piece = 0; piece < pieces; piece++) count_piece(piece);
    DigitStatistics sum(packing.radix);
    for (const DigitStatistics& part : parts) sum.append(part);
    return sum;
}

/// The digits of one run of packed words.
void add_run(DigitStatistics& sum, const WordPacking& packing, const BasicPackedReader& reader, upL_t digits,
             const lumo::ParallelContext& ctx, lumo::StatusIteration& progress) {
    const upL_t D = packing.digits_per_word;
    const upL_t round = PIECE_WORDS * std::clamp<upL_t>(ctx.tds, 1, 64);
    std::uint64_t few[FEW_WORDS];
    upL_t word = 0;
    for (upL_t whole = digits / D; whole - word > FEW_WORDS;) {
        const upL_t length = std::min(round, whole - word);
        sum.append(count_words(packing, length, ctx, [&](std::uint64_t* words, upL_t first, upL_t count) {
            reader.read_run(words, word + first, count);
        }));
        word += length;
        progress.complete(length * D);
    }
    while (word * D < digits) {
        const upL_t length = std::min(FEW_WORDS * D, digits - word * D);
        reader.read_run(few, word, packing.words_for(length));
        sum.append(count_few(packing, few, length));
        word += packing.words_for(length);
        progress.complete(length);
    }
}

/// The digits [from, from + count), by their values.
void add_values(DigitStatistics& sum, const WordPacking& packing, BasicDigitReader& reader, upL_t count,
                const lumo::ParallelContext& ctx, lumo::StatusIteration& progress) {
    const upL_t D = packing.digits_per_word;
    const upL_t most = std::min(packing.words_for(count), PIECE_WORDS * std::clamp<upL_t>(ctx.tds, 1, 64));
    const auto values = lumo::make_aligned<char>(most * D);
    for (upL_t at = 0; at < count;) {
        const upL_t length = std::min(most * D, count - at);
        reader.read(ctx, values.get(), static_cast<lumo::spL_t>(at), length);
        sum.append(count_words(packing, length / D, ctx, [&](std::uint64_t* words, upL_t first, upL_t n) {
            pack_digits(packing, DigitForm::values, words, values.get() + first * D, n);
        }));
        const upL_t rest = length % D;
        if (rest != 0) {
            char last[19] = {};
            std::copy_n(values.get() + (length - rest), rest, last);
            std::uint64_t word;
            pack_digits(packing, DigitForm::values, &word, last, 1);
            sum.append(count_few(packing, &word, rest));
        }
        at += length;
        progress.complete(length);
    }
}

/// Hash of the digits in front of the point; nothing where they are not known.
std::optional<std::uint64_t> integer_hash(const std::string& first_digits, upL_t radix) {
    const upL_t start = first_digits.starts_with('-') ? 1 : 0;
    const upL_t point = first_digits.find('.');
    if (point == std::string::npos) return std::nullopt;
    std::uint64_t hash = 0;
    for (upL_t i = start; i < point; i++) {
        char value;
        if (!values_of_text(radix, &value, &first_digits[i], 1)) return std::nullopt;
        hash = lumo::Hash61::add(lumo::Hash61::mul(hash, radix), static_cast<std::uint64_t>(value));
    }
    return hash;
}

}  // namespace

DigitStatistics read_statistics(BasicDigitReader& reader, upL_t count, const lumo::ParallelContext& ctx,
                                lumo::StatusNode& status) {
    const WordPacking& packing = WordPacking::of(reader.radix());
    DigitStatistics sum(reader.radix());
    const auto progress = status.make_iteration(count);
    if (auto* packed = dynamic_cast<BasicPackedReader*>(&reader)) {
        while (sum.digits < count)
            add_run(sum, packing, *packed, packed->open_run(sum.digits, count - sum.digits), ctx, *progress);
    } else if (count != 0) {
        add_values(sum, packing, reader, count, ctx, *progress);
    }
    return sum;
}

std::string statistics_text(const DigitStatistics& statistics, const std::string& first_digits) {
    std::string text = statistics.counts.report_line() + "\n\nHash(1 - " + std::to_string(statistics.digits) +
                       ") = " + std::to_string(statistics.hash) + "\n";
    const upL_t radix = statistics.counts.radix();
    const auto integer = integer_hash(first_digits, radix);
    if (!integer) return text;
    DigitStatistics whole(radix);
    whole.hash = *integer;
    whole.append(statistics);
    const lumo::HashedDigits hashes(radix == 10 ? whole.hash : 0, radix == 16 ? whole.hash : 0);
    return text + (radix == 10 ? hashes.dec_line() : hashes.hex_line()) + "\n";
}

}  // namespace DigitViewer2
