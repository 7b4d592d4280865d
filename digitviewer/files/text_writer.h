/// Writes a text digit file: sign, integer digits, point, fractional digits, nothing else.
#pragma once

#include <optional>

#include "digitviewer/files/digit_writer.h"
#include "digitviewer/files/file_handle.h"
#include "lumo/foundation/memory/aligned_malloc.h"

namespace DigitViewer2 {

class BasicTextWriter final : public BasicDigitWriter {
 public:
    /// Creates or empties the file. `first_digits`: text up to and including the point; what follows the
    /// point is not written. FileException "No decimal place was found." without one. Another radix than 10
    /// and 16 is fatal.
    BasicTextWriter(const std::string& path, const std::string& first_digits, upL_t radix);

    upL_t radix() const override { return base; }
    const std::string& path() const override { return name; }
    void write(const lumo::ParallelContext& ctx, const char* digits, upL_t offset, upL_t count) override;
    void write_text(const lumo::ParallelContext& ctx, const char* text, upL_t offset, upL_t count) override;
    void close() override;
    void publish(const std::string& final_path) override;

 private:
    static constexpr upL_t BLOCK_BYTES = 1 << 20;

    const std::string name;
    const upL_t base;
    const upL_t start;  ///< bytes before the first digit after the point
    std::optional<FileHandle> file;
    lumo::AlignedPtr<char> block;
};

}  // namespace DigitViewer2
