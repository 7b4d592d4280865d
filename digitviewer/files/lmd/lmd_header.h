/// The text in front of the digits of a compressed digit file.
#pragma once

#include <string>
#include <string_view>

#include "lumo/foundation/types/types.h"

namespace DigitViewer2 {

using lumo::upL_t;

/// Positions count the digits after the point of the whole set, from 0.
struct LmdHeader {
    /// A header must end within so many bytes.
    static constexpr upL_t MOST_BYTES = 1 << 16;
    static constexpr upL_t SMALLEST_BLOCK = 50;
    static constexpr upL_t UNLIMITED = ~upL_t(0);

    upL_t radix = 10;
    std::string first_digits;  ///< the leading digits with the point; may be empty
    upL_t total_digits = 0;    ///< of the whole set; 0 if unknown
    upL_t block_size = 0;      ///< digits a file; 0 for a single file
    upL_t block_id = 0;        ///< which file of the set, from 0
    upL_t data_start = 0;      ///< bytes of the header with its terminator

    /// Digits a file as far as the set has them; UNLIMITED for a single file of unknown length.
    upL_t block() const;
    /// Position of the first digit of file `id`; UNLIMITED if that is out of reach.
    upL_t start_of(upL_t id) const;
    /// Digits of file `id`: 0 for one behind the end.
    upL_t digits_of(upL_t id) const;
    /// Whether the two headers belong to one set.
    bool same_set(const LmdHeader& other) const;
};

/// Reads the header at the start of `bytes`. Lines end in CR LF or LF, unknown keys are passed over.
///
/// Throws FileException with the path at "BasicLmdFileReader::BasicLmdFileReader()": "No version # found.",
/// "This .lmd file is of a later format version.\n...", "Invalid Digits per File" below 50, "This file is out
/// of range.\n...", "Unsupported Radix", "Invalid Header: " and a line that cannot be read, "Incomplete
/// Header" when the header does not end within `bytes`.
LmdHeader parse_lmd_header(std::string_view bytes, const std::string& path);

/// Digits that the value of TotalDigits takes, with leading zeros, so that it can be set later.
inline constexpr upL_t TOTAL_DIGITS_WIDTH = 20;
std::string padded_total(upL_t total);

struct LmdHeaderText {
    std::string text;    ///< with the terminator
    upL_t total_offset;  ///< of the first byte of the value of TotalDigits
};
LmdHeaderText make_lmd_header(const LmdHeader& header);

}  // namespace DigitViewer2
