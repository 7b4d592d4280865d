#include "lumo/radix/output/read_back.h"

#include <algorithm>
#include <array>
#include <mutex>

#include "digitviewer/files/digit_text.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/numbers/words/words.h"
#include "lumo/radix/output/word_text.h"

namespace lumo {

namespace {

using FileIO::FileException;

const char* const LOCATION = "FloatWriterB::read_check()";

/// Hash of the integer digits in front of the point, which a sign may precede.
std::uint64_t first_digits_hash(const RadixReport& report, const std::string& first_digits, upL_t radix) {
    const upL_t start = !first_digits.empty() && first_digits[0] == '-' ? 1 : 0;
    const upL_t point = first_digits.find('.');
    if (point == std::string::npos)
        throw FileException(LOCATION, "A decimal place was not found within the first 63 bytes of the file.",
                            report.path);
    std::uint64_t h = 0;
    for (upL_t i = start; i < point; i++) {
        char value;
        if (!DigitViewer2::values_of_text(radix, &value, &first_digits[i], 1))
            throw FileException(LOCATION,
                                radix == 10 ? "Invalid decimal digit in first digits."
                                            : "Invalid hexadecimal digit in first digits.",
                                report.path);
        h = Hash61::add(Hash61::mul(h, radix), static_cast<unsigned char>(value));
    }
    return h;
}

/// Hash of digit values, as many words at a time as stay in the nearest cache.
std::uint64_t hash_values(const DigitPacking& packing, const char* values, upL_t count) {
    constexpr upL_t BLOCK = 256;
    const upL_t D = packing.digits_per_word;
    const upL_t words = count / D;
    std::uint64_t block[BLOCK];
    std::uint64_t h = 0;
    for (upL_t i = 0; i < words; i += BLOCK) {
        const upL_t length = std::min(BLOCK, words - i);
        values_to_words(packing, block + length, values + i * D, length);
        h = bp_hash_radix<std::uint64_t>(h, packing.residue, block, length);
    }
    const upL_t rest = count % D;
    return Hash61::add(Hash61::mul(h, Hash61::pow(packing.radix, rest)),
                       values_to_word(packing.radix, values + words * D, rest));
}

/// Counts and hash of digit values, in pieces of whole words.
std::uint64_t read_statistics(DigitCounts& counts, std::uint64_t seed, const DigitPacking& packing,
                              const char* values, upL_t count, const ParallelContext& ctx) {
    constexpr upL_t MOST_PIECES = 64;
    constexpr upL_t SMALLEST_PIECE = 2048;
    const upL_t D = packing.digits_per_word;
    const upL_t words = (count + D - 1) / D;
    const upL_t pieces =
        std::clamp<upL_t>(words / SMALLEST_PIECE, 1, std::clamp<upL_t>(ctx.tds, 1, MOST_PIECES));
    const upL_t piece_digits = (words / pieces + 1) * D;
    std::array<std::uint64_t, MOST_PIECES> hashes;
    std::mutex merging;
    const auto bounds = [&](upL_t i) {
        const upL_t from = std::min(i * piece_digits, count);
        return std::pair(from, std::min(from + piece_digits, count));
    };
    parallel_for(*ctx.parallelizer, 0, pieces, [&](upL_t i) {
        const auto [from, to] = bounds(i);
        hashes[i] = hash_values(packing, values + from, to - from);
        DigitCounts own(packing.radix);
        own.add(values + from, to - from);
        const std::lock_guard lock(merging);
        counts += own;
    });
    for (upL_t i = 0; i < pieces; i++) {
        const auto [from, to] = bounds(i);
        seed = Hash61::add(Hash61::mul(seed, Hash61::pow(packing.radix, to - from)), hashes[i]);
    }
    return seed;
}

[[noreturn]] void mismatch() {
    throw AlgorithmFailedException(LOCATION, "Digit output failed. Metadata cross-check doesn't match.");
}

}  // namespace

void read_back(const RadixReport& report, DigitViewer2::BasicDigitReader& reader, StatusNode& status,
               const ParallelContext& ctx, AlignedBufferC buffer) {
    const upL_t radix = reader.radix();
    if ((radix != 10 && radix != 16) || radix != report.counts.radix())
        throw FileException(LOCATION, "Invalid radix.", report.path);
    StatusSection section(status,
                          {{'T', radix == 10 ? "Verifying Decimal Output" : "Verifying Hexadecimal Output"}});
    const DigitPacking& packing = DigitPacking::of(radix);
    std::uint64_t hash = first_digits_hash(report, reader.first_digits(), radix);
    DigitCounts counts(radix);

    const auto progress = status.make_iteration(report.digits);
    char* const values = static_cast<char*>(buffer.data());
    const upL_t block = buffer.size() / packing.digits_per_word * packing.digits_per_word;
    require_capacity(LOCATION, block, packing.digits_per_word);
    for (upL_t start = 0; start < report.digits; start += block) {
        const upL_t length = std::min(block, report.digits - start);
        reader.read(ctx, values, static_cast<spL_t>(start), length);
        hash = read_statistics(counts, hash, packing, values, length, ctx);
        progress->complete(length);
    }
    hash = Hash61::canonical(hash);

    if (counts != report.counts) {
        Console::print_line("Pre-Write Counts = " + report.counts.to_string(), 'R');
        Console::print_line("Read-Back Counts = " + counts.to_string(), 'R');
        mismatch();
    }
    if (hash != report.hash) {
        Console::print_line("Before Hash = " + std::to_string(report.hash), 'R');
        Console::print_line("After  Hash = " + std::to_string(hash), 'R');
        mismatch();
    }
    if (reader.digits() != report.digits &&
        reader.digits() != DigitViewer2::BasicDigitReader::UNKNOWN_DIGITS) {
        Console::print_line("Pre-Write Digits = " + std::to_string(report.digits), 'R');
        Console::print_line("Read-Back Digits = " + std::to_string(reader.digits()), 'R');
        mismatch();
    }
}

}  // namespace lumo
