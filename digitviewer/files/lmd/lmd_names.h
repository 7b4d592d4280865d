/// Names of compressed digit files: "<base>.lmd" for a single file, "<base> - <id>.lmd" for those of a set.
#pragma once

#include <optional>
#include <string>

#include "lumo/foundation/types/types.h"

namespace DigitViewer2 {

using lumo::upL_t;

inline constexpr const char* LMD_EXTENSION = ".lmd";

/// A name cut into the set's prefix and the number before the extension. Leading zeros belong to the prefix.
struct LmdName {
    std::string prefix;       ///< with its folder; the name without extension when there is no number
    std::optional<upL_t> id;  ///< absent for a name without a number

    /// FileException at "BasicLmdSetReader::BasicLmdSetReader()": "File name is too short.", "Invalid
    /// Extension".
    static LmdName parse(const std::string& path);
};

std::string lmd_set_name(const std::string& prefix, upL_t id);
/// What stands between the base of a set's names and the number.
inline constexpr const char* LMD_SET_SEPARATOR = " - ";
/// The final name of file `id` of a set in blocks of so many digits; 0 is a single file.
std::string lmd_path(const std::string& base, upL_t block_size, upL_t id);
/// " (incomplete).lmd" in place of ".lmd".
std::string incomplete_lmd_name(const std::string& path);
bool is_incomplete_lmd_name(const std::string& path);

}  // namespace DigitViewer2
