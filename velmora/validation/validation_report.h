/// What a finished computation tells of itself, and the text of it that is kept.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmora {

/// The content of a validation file, one field a group of lines. Lines have no ends; an empty line of a group
/// stays one.
struct ValidationReport {
    std::string program;  ///< version and build
    std::string tuning;   ///< instruction set of the kernels
    std::string user;
    std::vector<std::string> machine;      ///< report of the machine
    std::vector<std::string> constant;     ///< what was computed
    std::vector<std::string> computation;  ///< mode, threads, memory
    std::string configuration;             ///< the settings in `.cfg` text
    std::vector<std::string> times;
    std::vector<std::string> digits;  ///< digits, counts, hashes
    std::vector<std::string> sanity;
    std::vector<std::string> events;
    /// Two words that tell this run from others: they go into the first checksum.
    std::uint64_t record[2] = {0, 0};
};

/// The version that make_validation_text() writes.
inline constexpr const char* VALIDATION_VERSION = "1.3";

/// The full text, checksums included. Its lines end in carriage return and newline.
std::string make_validation_text(const ValidationReport& report);

/// Writes the text to a new file `<base>.txt`; if there is one, to `<base> (2).txt` and so on. Prints
/// "Validation File: " and the path, which it returns. FileException when the file cannot be written.
std::string save_validation_file(const std::string& base, const std::string& text);

}  // namespace velmora
