/// A set of compressed digit files, or a single one, read as one stream of digits.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "digitviewer/files/lmd/lmd_file_reader.h"
#include "digitviewer/files/lmd/lmd_names.h"
#include "digitviewer/files/packed_reader.h"

namespace DigitViewer2 {

class BasicLmdSetReader final : public BasicPackedReader {
 public:
    /// Any file of the set. Its folder is searched for the others. See LmdName::parse() and
    /// parse_lmd_header(); InconsistentMetaData when the header's BlockID is not the number in the name.
    explicit BasicLmdSetReader(const std::string& path);

    /// Takes files of the set that stand in another folder.
    void add_search_directory(const std::string& folder);
    /// Files that were found and do not belong to the set: Inconsistent Metadata: "name". Emptied by the
    /// call.
    std::vector<std::string> take_warnings() { return std::exchange(warnings, {}); }

    const LmdHeader& header() const { return head; }
    std::string description() const { return current->description(); }
    /// Names of the files that the digits [offset, offset + count) need and that are not there, MOST_NAMES at
    /// most.
    std::vector<std::string> missing_files(upL_t offset, upL_t count) const;
    static constexpr upL_t MOST_NAMES = 20;

    upL_t radix() const override { return head.radix; }
    const std::string& first_digits() const override { return head.first_digits; }
    upL_t digits() const override { return head.total_digits == 0 ? UNKNOWN_DIGITS : head.total_digits; }
    /// Besides: "The following needed files are missing or inaccessible:" and their names; "Unable to open
    /// file #" and the id.
    void read(const lumo::ParallelContext& ctx, char* out, spL_t offset, upL_t count) override;
    upL_t open_run(upL_t offset, upL_t count) override;
    void read_run(std::uint64_t* words, upL_t first, upL_t count) const override {
        current->read_words(words, run_start + first, count);
    }

 private:
    void load_file(upL_t id);
    void check_set(const BasicLmdFileReader& file, upL_t id) const;
    void require_files(upL_t offset, upL_t count) const;
    std::string expected_path(upL_t id) const;
    bool has_file(upL_t id) const;

    const std::string path;
    LmdName name;
    LmdHeader head;
    std::unique_ptr<BasicLmdFileReader> current;  ///< never null
    std::map<upL_t, std::string> files;           ///< paths of the files of the set
    std::vector<std::string> warnings;
    upL_t run_start = 0;  ///< word of the open run
};

}  // namespace DigitViewer2
