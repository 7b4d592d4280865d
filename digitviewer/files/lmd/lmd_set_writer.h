/// Writes digits to a set of compressed files, or to a single one.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "digitviewer/files/digit_writer.h"
#include "digitviewer/files/lmd/lmd_file_writer.h"
#include "lumo/foundation/memory/aligned_malloc.h"

namespace DigitViewer2 {

/// Files are created as digits reach them, and finished and named when they are full. Every position is to be
/// written once, in any order; a set may be written in part, by whole files.
class BasicLmdSetWriter final : public BasicDigitWriter {
 public:
    /// `base`: folder and name; " - <id>.lmd" is appended, or ".lmd" for a single file. `digits_per_file`:
    /// 0 for a single file, else at least 50. `total_digits`: of the whole set; 0 if it comes out at close().
    /// Errors of BasicLmdFileWriter::check().
    BasicLmdSetWriter(const std::string& base, const std::string& first_digits, upL_t radix,
                      upL_t digits_per_file, upL_t total_digits);
    /// Prints "Warning, closing incomplete file" for each file that is not full, which keeps its name, and
    /// how many were finished.
    ~BasicLmdSetWriter() override;

    upL_t radix() const override { return header.radix; }
    /// The final name of the first file.
    const std::string& path() const override { return first_path; }
    /// Digits behind the total are refused: InvalidParametersException "File ID is out of range.".
    void write(const lumo::ParallelContext& ctx, const char* digits, upL_t offset, upL_t count) override;
    void write_text(const lumo::ParallelContext& ctx, const char* text, upL_t offset, upL_t count) override;
    /// Finishes the last file when the total was not known, and enters it in all others. Files that are not
    /// full stay unfinished.
    void close() override;
    /// The files have their names; nothing is left to do.
    void publish(const std::string&) override { close(); }

    /// Digits a file; see LmdHeader::block().
    upL_t block() const { return header.block(); }
    /// Name of file `id`.
    std::string file_path(upL_t id) const;

 private:
    void store(const lumo::ParallelContext& ctx, DigitForm form, const char* digits, upL_t offset,
               upL_t count);
    BasicLmdFileWriter& open_file(upL_t id);

    LmdHeader header;
    const std::string base;
    std::string first_path;
    lumo::AlignedPtr<std::uint64_t> buffer;
    std::map<upL_t, std::unique_ptr<BasicLmdFileWriter>> open_files;  ///< begun and not full
    std::vector<std::pair<std::string, upL_t>> finished;  ///< paths and places of totals to be entered
    upL_t finished_files = 0;
    upL_t last_id = 0;  ///< file written last
    upL_t end = 0;      ///< behind the last digit written
};

}  // namespace DigitViewer2
