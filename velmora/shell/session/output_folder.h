/// The folder that digit files go to.
#pragma once

#include <string>

#include "lumo/foundation/types/types.h"

namespace velmora {

using lumo::upL_t;

/// The path with a '/' behind it, unless it is empty (the current folder) or ends in '/' or '\'.
std::string as_folder(std::string path);

/// Why files cannot be made in the folder, or the folder itself where it does not stand yet: errno, 0 if they
/// can. Touches nothing.
int folder_error(const std::string& folder);

/// Bytes that the file system of the folder has free for this user; the largest number where that is unknown.
upL_t free_bytes(const std::string& folder);

/// Makes the folder where needed, and a file in it for a moment, to know that files can be made. Throws
/// FileIO::FileException "Unable to write to the output folder." with the path and errno.
void prepare_output_folder(const std::string& folder);

}  // namespace velmora
