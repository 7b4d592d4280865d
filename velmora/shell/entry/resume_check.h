#pragma once

#include <string>

namespace velmora {

/// Whether a file stands at the path. Throws FileIO::FileException at "FileExists()" when it cannot be opened
/// for another reason than its absence.
bool file_exists(const std::string& path);

/// Looks for the checkpoint of an unfinished computation in the current folder. A checkpoint outranks the
/// command line: where one stands, nothing else is begun. Throws InvalidParametersException, and leaves the
/// file as it is, when the computation cannot be resumed.
void check_for_checkpoint();

}  // namespace velmora
