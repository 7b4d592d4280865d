/// Where the digits after the point of a number are written, in blocks.
#pragma once

#include <string>

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace DigitViewer2 {

using lumo::upL_t;

/// Used by one thread at a time. Position 0 is the first digit after the point. All operations throw
/// FileException with path and errno when the system fails.
class BasicDigitWriter {
 public:
    virtual ~BasicDigitWriter() = default;

    virtual upL_t radix() const = 0;
    /// Name under which the digits are being written.
    virtual const std::string& path() const = 0;
    /// Digit values. InvalidParametersException "Invalid Digit" for one that is not below the radix.
    virtual void write(const lumo::ParallelContext& ctx, const char* digits, upL_t offset, upL_t count) = 0;
    /// The same from text: '0'-'9', 'a'-'f', not checked.
    virtual void write_text(const lumo::ParallelContext& ctx, const char* text, upL_t offset,
                            upL_t count) = 0;
    /// Ends the writing; the digits are on their way to the device. Nothing may be written afterwards.
    virtual void close() = 0;
    /// After close(): waits for the device and gives the digits their final name, replacing what bears it.
    virtual void publish(const std::string& final_path) = 0;
};

}  // namespace DigitViewer2
