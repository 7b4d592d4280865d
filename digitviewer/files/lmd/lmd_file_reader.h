/// One compressed digit file, read at any position.
#pragma once

#include <optional>

#include "digitviewer/files/file_handle.h"
#include "digitviewer/files/lmd/lmd_header.h"
#include "digitviewer/files/lmd/packed_words.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace DigitViewer2 {

using lumo::spL_t;

/// Used by one thread at a time but for read_words(). Positions count the digits of this file, from 0. All
/// operations throw FileException with the path; nothing in the file is taken on trust.
class BasicLmdFileReader {
 public:
    /// Reads the header; see parse_lmd_header(). A name with " (incomplete)" is refused.
    explicit BasicLmdFileReader(const std::string& path);

    const std::string& path() const { return name; }
    const LmdHeader& header() const { return head; }
    const WordPacking& packing() const { return *words; }
    /// Digits that this file has to hold; as many as it does hold where the header does not tell.
    upL_t digits() const { return count_of_digits; }

    /// Opens the file if it is not open; read() and read_words() need that. Closes it.
    void start_access();
    void stop_access() { file.reset(); }

    /// out[0 .. count) := digit values. "Incomplete read." beyond digits() or the end of the file, "Invalid
    /// Word" for one that is no packed word of the radix.
    void read(const lumo::ParallelContext& ctx, char* out, upL_t offset, upL_t count);
    /// out[0 .. count) := words from `first_word` on, checked in the same way. Several threads may call.
    void read_words(std::uint64_t* out, upL_t first_word, upL_t count) const;

    /// "digits_per_file:", "digits_per_word:", "words_in_this_file:" and their values, a line each.
    std::string description() const;

 private:
    void read_piece(char* out, upL_t offset, upL_t count) const;

    const std::string name;
    std::optional<FileHandle> file;
    LmdHeader head;
    const WordPacking* words = nullptr;
    upL_t count_of_digits = 0;
};

}  // namespace DigitViewer2
