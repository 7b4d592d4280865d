#include "velmora/shell/session/output_folder.h"

#include <unistd.h>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "lumo/foundation/errors/exceptions.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const std::string& folder, int error) {
    throw lumo::FileIO::FileException("prepare_output_folder()", "Unable to write to the output folder.",
                                      folder, error);
}

}  // namespace

std::string as_folder(std::string path) {
    if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
    return path;
}

bool is_writable_folder(const std::string& folder) {
    std::error_code error;
    fs::path place = folder.empty() ? fs::path(".") : fs::absolute(folder, error);
    if (error) return false;
    // What does not exist is made in the nearest folder that does.
    while (!fs::exists(place, error)) {
        if (error || !place.has_parent_path() || place == place.parent_path()) return false;
        place = place.parent_path();
    }
    return fs::is_directory(place, error) && ::access(place.c_str(), W_OK | X_OK) == 0;
}

void prepare_output_folder(const std::string& folder) {
    if (!folder.empty()) {
        std::error_code error;
        fs::create_directories(folder, error);
        if (error) fail(folder, error.value());
    }
    std::string probe = folder + "velmora-XXXXXX";
    const int descriptor = ::mkstemp(probe.data());
    if (descriptor < 0) fail(folder.empty() ? "." : folder, errno);
    ::close(descriptor);
    ::unlink(probe.c_str());
}

}  // namespace velmora
