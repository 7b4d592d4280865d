#include "lumo/radix/output/float_reader.h"

#include <algorithm>

#include "digitviewer/files/digit_text.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

using FileIO::FileException;

FloatReaderB::FloatReaderB(upL_t radix, std::string first_digits, const std::uint64_t* words_end,
                           upL_t digits)
    : packing(DigitPacking::of(radix)),
      head(std::move(first_digits)),
      end(words_end),
      count_of_digits(digits) {}

void FloatReaderB::read(const ParallelContext& ctx, char* out, spL_t offset, upL_t count) {
    if (offset < 0)
        throw FileException("FloatReaderB::read()", "Attempted to read in front of decimal place.");
    const auto first = static_cast<upL_t>(offset);
    if (first > count_of_digits || count > count_of_digits - first)
        throw FileException("FloatReaderB::read()", "Incomplete read.");
    DigitViewer2::for_pieces(ctx, count, [&](upL_t from, upL_t to) {
        char text[19];
        while (from < to) {
            const upL_t position = first + from;
            const upL_t skip = position % packing.digits_per_word;
            const upL_t length = std::min(to - from, packing.digits_per_word - skip);
            words_to_text(packing, text, end - position / packing.digits_per_word, 1);
            DigitViewer2::values_of_text(packing.radix, out + from, text + skip, length);
            from += length;
        }
    });
}

}  // namespace lumo
