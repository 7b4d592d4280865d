/// The digit viewer: looks at digit files of both formats, counts their digits and converts them.
#pragma once

#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace DigitViewer2 {

/// The dialogue, until it is left. A file that cannot be opened is the FileException of its reader; failures
/// of a choice are printed and lead back to the menu. EndOfInput when the input ends at a question.
void Menu_DigitViewer(const lumo::ParallelContext& parallel);

}  // namespace DigitViewer2
