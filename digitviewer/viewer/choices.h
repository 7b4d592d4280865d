/// The choices of the viewer's menu. Each asks what it needs, does it and tells of it. They throw
/// FileException, and EndOfInput when the input ends at a question.
#pragma once

#include "digitviewer/viewer/source.h"

namespace DigitViewer2 {

void view_range(const Source& source);
void compute_statistics(const Source& source);
void extract_text(const Source& source);
void compress_all(const Source& source);
void compress_subset(const Source& source);
void add_search_directory(const Source& source);

}  // namespace DigitViewer2
