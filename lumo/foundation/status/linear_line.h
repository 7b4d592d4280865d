/// The line of the console that a chain of single-threaded status writes on.
#pragma once

#include <chrono>

#include "lumo/foundation/status/status_node.h"

namespace lumo {

/// Texts are put behind each other on one line until it is full. Guarded by the console lock, so that every
/// thread may use it.
///
/// A chain of many small steps must not flood the console: texts of inner levels draw on an allowance of
/// characters that refills with time, and are dropped while it is used up.
class LinearLine {
 public:
    explicit LinearLine(upL_t width) : line_width(width) {}

    /// Writes a text of the given level; level 1 opens a line of its own and is never dropped.
    void write(const ColorString& text, upL_t level);
    /// Writes a line of its own.
    void write_row(const ColorString& text);
    /// Ends the line if something stands on it.
    void finish();

 private:
    static constexpr double ALLOWANCE_LIMIT = 4096;  // characters
    static constexpr double ALLOWANCE_PER_SECOND = 400;

    /// Whether `width` characters fit the allowance, which they are then taken from.
    bool afford(upL_t width);
    /// Ends the line if something of this chain stands on it and nobody else has written since.
    void end_line();
    /// With a blank before it where it would run together with the text before.
    void put(const ColorString& text);

    const upL_t line_width;
    upL_t column = 0;
    ColorString last_text;
    std::uint64_t last_count = 0;  ///< the console's write counter after our last print
    double allowance = ALLOWANCE_LIMIT;
    std::chrono::steady_clock::time_point refilled = std::chrono::steady_clock::now();
};

}  // namespace lumo
