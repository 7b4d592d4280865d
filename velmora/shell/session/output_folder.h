/// The folder that digit files go to.
#pragma once

#include <string>

namespace velmora {

/// The path with a '/' behind it, unless it is empty (the current folder) or ends in '/' or '\'.
std::string as_folder(std::string path);

/// Whether files can be made in the folder, or the folder itself where it does not stand yet. Touches
/// nothing.
bool is_writable_folder(const std::string& folder);

/// Makes the folder where needed, and a file in it for a moment, to know that files can be made. Throws
/// FileIO::FileException "Unable to write to the output folder." with the path and errno.
void prepare_output_folder(const std::string& folder);

}  // namespace velmora
