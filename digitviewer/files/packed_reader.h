/// Digits that are stored packed in words, for who needs no single digits.
#pragma once

#include <cstdint>

#include "digitviewer/files/digit_reader.h"

namespace DigitViewer2 {

/// A run is a stretch of digits that stand packed without gaps; the last word of a file may be filled in
/// part, with its digits at the most significant end.
class BasicPackedReader : public BasicDigitReader {
 public:
    /// Makes the run from position `offset` on accessible; returns its digits, at most `count`. 0 when no
    /// word begins there. FileException as for read().
    virtual upL_t open_run(upL_t offset, upL_t count) = 0;
    /// words[0 .. count) := words of the open run from its word `first` on. Several threads may call.
    virtual void read_run(std::uint64_t* words, upL_t first, upL_t count) const = 0;
};

}  // namespace DigitViewer2
