/// Reads a text digit file at any position.
#pragma once

#include "digitviewer/files/digit_reader.h"
#include "digitviewer/files/file_handle.h"

namespace DigitViewer2 {

class BasicTextReader final : public BasicDigitReader {
 public:
    /// Bytes at the start of a file among which the point must stand.
    static constexpr upL_t POINT_SEARCH_BYTES = 63;

    /// `forced_radix`: 10 or 16, or 0 to take 16 when a letter stands in the first 64 bytes, else 10.
    /// FileException at "BasicTextReader::BasicTextReader()": "A decimal place was not found within the first
    /// 63 bytes of the file.", "Invalid Radix" when the forced radix does not fit. Digits after the point are
    /// checked when they are read.
    explicit BasicTextReader(const std::string& path, upL_t forced_radix = 0);

    upL_t radix() const override { return base; }
    const std::string& first_digits() const override { return head; }
    upL_t digits() const override { return count_of_digits; }
    void read(const lumo::ParallelContext& ctx, char* out, spL_t offset, upL_t count) override;

 private:
    const FileHandle file;
    upL_t base = 10;
    std::string head;  ///< up to and including the point
    upL_t count_of_digits = 0;
};

}  // namespace DigitViewer2
