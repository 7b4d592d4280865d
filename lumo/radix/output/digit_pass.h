/// The one pass over the digits of an output: text, statistics, hash, digest and file.
#pragma once

#include "digitviewer/files/digit_writer.h"
#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/status/status_node.h"
#include "lumo/radix/digit_report.h"
#include "lumo/radix/output/word_text.h"

namespace lumo {

struct DigitPass {
    const DigitPacking& packing;
    const std::uint64_t* words_end;  ///< words_end[-1] holds the first digits after the point
    upL_t digits;
    upL_t block_words;  ///< turned to text at once

    /// Bytes of scratch that run() needs.
    static upL_t scratch_bytes(upL_t block_words);

    /// Completes the report, whose hash holds that of the integer part and whose counts are empty, and hands
    /// the text to the writer, if there is one. While a block is digested, it is written and the next is
    /// formatted: the digest, whose steps wait for each other, takes about as long as all the rest.
    void run(RadixReport& report, DigitViewer2::BasicDigitWriter* writer, StatusNode& status,
             const ParallelContext& ctx, AlignedBufferC scratch) const;

 private:
    void format(RadixReport& report, char* text, upL_t first_word, upL_t count,
                const ParallelContext& ctx) const;
    std::uint64_t hash(std::uint64_t seed, upL_t first_word, upL_t count, const ParallelContext& ctx) const;
};

}  // namespace lumo
