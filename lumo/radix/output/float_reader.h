/// The digits of a number in memory, read as the digits of a file are.
#pragma once

#include "digitviewer/files/digit_reader.h"
#include "lumo/radix/output/word_text.h"

namespace lumo {

class FloatReaderB final : public DigitViewer2::BasicDigitReader {
 public:
    /// words_end[-1] holds the first digits after the point, words_end[-2] those that follow. The words stay
    /// the caller's. InvalidParametersException "Invalid radix.".
    FloatReaderB(upL_t radix, std::string first_digits, const std::uint64_t* words_end, upL_t digits);

    upL_t radix() const override { return packing.radix; }
    const std::string& first_digits() const override { return head; }
    upL_t digits() const override { return count_of_digits; }
    void read(const ParallelContext& ctx, char* out, spL_t offset, upL_t count) override;

 private:
    const DigitPacking& packing;
    const std::string head;
    const std::uint64_t* const end;
    const upL_t count_of_digits;
};

}  // namespace lumo
