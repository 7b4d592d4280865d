/// Writes one compressed digit file.
#pragma once

#include <optional>

#include "digitviewer/files/file_handle.h"
#include "digitviewer/files/lmd/lmd_header.h"
#include "digitviewer/files/lmd/packed_words.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace DigitViewer2 {

/// Used by one thread at a time. Positions count the digits of this file, from 0. The file bears its
/// incomplete name until finish(). Operations throw FileException when the system fails.
class BasicLmdFileWriter {
 public:
    static constexpr upL_t BUFFER_WORDS = 1 << 16;

    /// Creates the file under its incomplete name and writes the header, in which the total is unknown until
    /// finish(). `raw_io_buffer` holds BUFFER_WORDS and stays the caller's; writers may share it. See
    /// check().
    BasicLmdFileWriter(std::string path, const LmdHeader& header, std::uint64_t* raw_io_buffer);

    /// InvalidParametersException "File ID is out of range.", "Invalid first digits." for text that no
    /// header line can hold; FileException "Unsupported Radix", "Invalid Digits per File".
    static void check(const LmdHeader& header, const std::string& path);

    const std::string& path() const { return name; }
    const std::string& incomplete_path() const { return incomplete; }
    /// Digits written so far, those written twice counted twice.
    upL_t written() const { return count_of_digits; }

    /// Opens the file if it is not open, which write() does by itself; closes it.
    void start_access();
    void stop_access();

    /// A word that is filled in part is merged with what the file holds. InvalidParametersException "Invalid
    /// Digit" at "BasicLmdFileWriter::store_digits_B()" for a value that is no digit of the radix.
    void write(const lumo::ParallelContext& ctx, DigitForm form, const char* digits, upL_t offset,
               upL_t count);
    /// Enters the total, brings everything to the device and gives the file its name.
    void finish(upL_t total_digits);

    /// Enters a total in a finished file.
    static void set_total(const std::string& path, upL_t total_offset, upL_t total_digits);
    upL_t total_offset() const { return offset_of_total; }

 private:
    void store_digits_B(DigitForm form, const char* digits, upL_t word, upL_t skip, upL_t count);

    const std::string name;
    const std::string incomplete;
    const WordPacking* words = nullptr;
    std::uint64_t* const buffer;
    std::optional<FileHandle> file;
    upL_t data_start = 0;
    upL_t offset_of_total = 0;
    upL_t count_of_digits = 0;
};

}  // namespace DigitViewer2
