/// The digits after the point of a number, readable at any position.
#pragma once

#include <string>

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace DigitViewer2 {

using lumo::spL_t;
using lumo::upL_t;

/// Used by one thread at a time. Position 0 is the first digit after the point.
class BasicDigitReader {
 public:
    virtual ~BasicDigitReader() = default;

    virtual upL_t radix() const = 0;  ///< 10 or 16
    /// Text up to and including the point. May be followed by digits after it.
    virtual const std::string& first_digits() const = 0;
    /// Digits after the point; 0 when there are none, UNKNOWN_DIGITS when the source does not tell.
    virtual upL_t digits() const = 0;
    /// out[0 .. count) := digit values of positions offset and on. Works in parallel under the context.
    /// FileException "Attempted to read in front of decimal place." for a negative offset, and when the
    /// digits are not there or not digits of the radix.
    virtual void read(const lumo::ParallelContext& ctx, char* out, spL_t offset, upL_t count) = 0;

    static constexpr upL_t UNKNOWN_DIGITS = ~upL_t(0);
};

}  // namespace DigitViewer2
