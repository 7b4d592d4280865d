#include "velmora/shell/entry/resume_check.h"

#include <cerrno>
#include <fstream>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace velmora {

namespace {

constexpr const char* CHECKPOINT_FILE = "velmora Checkpoint File.txt";

}  // namespace

bool file_exists(const std::string& path) {
    errno = 0;
    if (std::ifstream(path, std::ios::binary).is_open()) return true;
    const int error = errno;
    if (error == ENOENT) return false;
    throw lumo::FileIO::FileException("FileExists()", "Unable to open file. errno = " + std::to_string(error),
                                      path, error);
}

void check_for_checkpoint() {
    if (!file_exists(CHECKPOINT_FILE)) return;
    lumo::Console::print_line("An unfinished computation has been found.", 'Y');
    lumo::Console::set_color('w');
    // Computations in memory leave no checkpoints: another version of the program has written this one.
    throw lumo::InvalidParametersException(
        "", std::string("Cannot resume computation. The version does not match.\n"
                        "To start another computation here, move the file \"") +
                CHECKPOINT_FILE + "\" away.");
}

}  // namespace velmora
