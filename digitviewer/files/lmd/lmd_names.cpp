#include "digitviewer/files/lmd/lmd_names.h"

#include <charconv>

#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

using lumo::FileIO::FileException;

namespace {

constexpr std::string_view EXTENSION = LMD_EXTENSION;
constexpr std::string_view INCOMPLETE = " (incomplete).lmd";

}  // namespace

LmdName LmdName::parse(const std::string& path) {
    const char* const location = "BasicLmdSetReader::BasicLmdSetReader()";
    const upL_t slash = path.rfind('/');
    const upL_t name_start = slash == std::string::npos ? 0 : slash + 1;
    if (path.size() - name_start <= EXTENSION.size())
        throw FileException(location, "File name is too short.", path, 0);
    if (!path.ends_with(EXTENSION)) throw FileException(location, "Invalid Extension", path, 0);
    LmdName name{path.substr(0, path.size() - EXTENSION.size()), {}};

    upL_t start = name.prefix.size();
    while (start > name_start && name.prefix[start - 1] >= '0' && name.prefix[start - 1] <= '9') start--;
    while (start + 1 < name.prefix.size() && name.prefix[start] == '0') start++;
    upL_t id = 0;
    const char* const end = name.prefix.data() + name.prefix.size();
    const auto [stop, error] = std::from_chars(name.prefix.data() + start, end, id);
    if (error != std::errc() || stop != end) return name;
    name.prefix.resize(start);
    name.id = id;
    return name;
}

std::string lmd_set_name(const std::string& prefix, upL_t id) {
    return prefix + std::to_string(id) + LMD_EXTENSION;
}

std::string lmd_path(const std::string& base, upL_t block_size, upL_t id) {
    return block_size == 0 ? base + LMD_EXTENSION : lmd_set_name(base + LMD_SET_SEPARATOR, id);
}

std::string incomplete_lmd_name(const std::string& path) {
    return path.substr(0, path.size() - EXTENSION.size()).append(INCOMPLETE);
}

bool is_incomplete_lmd_name(const std::string& path) {
    return path.ends_with(INCOMPLETE);
}

}  // namespace DigitViewer2
