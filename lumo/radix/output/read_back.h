/// The check of an output by reading it back as the digit viewer would.
#pragma once

#include "digitviewer/files/digit_reader.h"
#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/status/status_node.h"
#include "lumo/radix/digit_report.h"

namespace lumo {

/// Streams all digits through `buffer` (at least one word's digits) and compares their number, counts and
/// hash with the report. Prints what differs.
///
/// FileException "Invalid radix.", "Invalid decimal digit in first digits.", "Invalid hexadecimal digit in
/// first digits."; AlgorithmFailedException "Digit output failed. Metadata cross-check doesn't match.".
void read_back(const RadixReport& report, DigitViewer2::BasicDigitReader& reader, StatusNode& status,
               const ParallelContext& ctx, AlignedBufferC buffer);

}  // namespace lumo
