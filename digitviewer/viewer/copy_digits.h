/// Digits from one file to another, of whatever formats.
#pragma once

#include "digitviewer/files/digit_reader.h"
#include "digitviewer/files/digit_writer.h"
#include "lumo/foundation/status/status_node.h"

namespace DigitViewer2 {

/// Writes the digits [from, to) of the reader at their own positions. While a block is written the next one
/// is read, on the threads of the context. Progress goes to the status node. Throws what reader and writer
/// throw.
void copy_digits(BasicDigitReader& reader, BasicDigitWriter& writer, upL_t from, upL_t to,
                 const lumo::ParallelContext& ctx, lumo::StatusNode& status);

}  // namespace DigitViewer2
