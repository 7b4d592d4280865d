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

/// The folder, or the nearest above it that stands: what is missing will be made there.
fs::path nearest_standing(const std::string& folder, std::error_code& error) {
    fs::path place = folder.empty() ? fs::path(".") : fs::absolute(folder, error);
    while (!error && !fs::exists(place, error) && !error) {
        if (!place.has_parent_path() || place == place.parent_path())
            error = std::make_error_code(std::errc::no_such_file_or_directory);
        else
            place = place.parent_path();
    }
    return place;
}

}  // namespace

std::string as_folder(std::string path) {
    if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
    return path;
}

int folder_error(const std::string& folder) {
    std::error_code error;
    const fs::path place = nearest_standing(folder, error);
    if (error) return error.value();
    if (!fs::is_directory(place, error)) return error ? error.value() : ENOTDIR;
    return ::access(place.c_str(), W_OK | X_OK) == 0 ? 0 : errno;
}

upL_t free_bytes(const std::string& folder) {
    std::error_code error;
    const fs::path place = nearest_standing(folder, error);
    if (error) return ~upL_t(0);
    return fs::space(place, error).available;
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
