/// The digit file that the viewer has open.
#pragma once

#include <memory>
#include <string>

#include "digitviewer/files/digit_reader.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace DigitViewer2 {

class BasicLmdSetReader;

struct Source {
    std::string path;
    std::unique_ptr<BasicDigitReader> reader;
    BasicLmdSetReader* lmd = nullptr;  ///< the reader, when it is one of compressed files
    lumo::ParallelContext parallel;

    /// Opens by the extension: ".lmd" or ".txt". FileException "Invalid Extension" for any other, and what
    /// the readers throw.
    static Source open(const std::string& path, const lumo::ParallelContext& parallel);

    /// The folder of the file, with its '/'; empty for the current one.
    std::string folder() const;
    /// Digits after the point; 0 when the file does not tell.
    upL_t known_digits() const;
    /// Whether digits [offset, offset + count) are within the file; files of a set may still be missing.
    bool holds(upL_t offset, upL_t count) const;
    /// Prints and returns false when digits of the range are not there.
    bool is_accessible(upL_t offset, upL_t count) const;
    /// Prints what is known of the file.
    void print() const;
    /// Prints the files that were found and do not belong to the set.
    void print_warnings() const;
};

}  // namespace DigitViewer2
