/// Statistics over the digits of a file.
#pragma once

#include <string>

#include "digitviewer/files/digit_reader.h"
#include "digitviewer/viewer/word_counter.h"
#include "lumo/foundation/status/status_node.h"

namespace DigitViewer2 {

/// Counts and hash of the digits [0, count) of the reader, on the threads of the context. Progress goes to
/// the status node. Throws what the reader throws.
DigitStatistics read_statistics(BasicDigitReader& reader, upL_t count, const lumo::ParallelContext& ctx,
                                lumo::StatusNode& status);

/// "Dec Counts: ", "Hash(1 - N) = " and, when the digits before the point are known, the line of
/// Floor(|x| * 10^dec) that a run prints; a line each.
std::string statistics_text(const DigitStatistics& statistics, const std::string& first_digits);

}  // namespace DigitViewer2
