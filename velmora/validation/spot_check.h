/// Known digits of constants, and the comparison of computed digits with them.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "digitviewer/files/digit_reader.h"

namespace velmora {

/// The decimal digits that are known of one constant, read from a digit file: a line each of the position of
/// a window's last digit, counted from 1 after the point, and its digits, separated by blanks or tabs. What
/// follows a '#' is a comment.
class SpotChecks {
 public:
    /// No file was found.
    SpotChecks() = default;
    /// ParseException "Error parsing digit file: " and what is wrong, "Duplicate entries." among others.
    explicit SpotChecks(std::string_view file_text);

    /// Looks for `<name>.txt` in the folders in their order. FileException when a file that is there cannot
    /// be read.
    static SpotChecks load(const std::string& name, const std::vector<std::string>& folders);
    /// Where digit files stand, seen from the folder of the program.
    static std::vector<std::string> folders();

    bool found() const { return is_loaded; }
    /// Compares the window that ends last within the digits. "Good through 1,000,000"; "Unavailable - Digit
    /// file not found.", "Unavailable - No suitable spot check entry.". On a difference it prints "Mismatch
    /// at " with the position and throws AlgorithmFailedException "Spot check failed at: " with it.
    std::string check(DigitViewer2::BasicDigitReader& digits) const;
    /// Whether check() had digits to compare with, by what it returned.
    static bool passed(std::string_view verdict) { return verdict.starts_with("Good through "); }

 private:
    bool is_loaded = false;
    std::map<lumo::upL_t, std::string> windows;  ///< by their last position
};

}  // namespace velmora
