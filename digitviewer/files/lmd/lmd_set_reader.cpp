#include "digitviewer/files/lmd/lmd_set_reader.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

using lumo::FileIO::FileException;
namespace fs = std::filesystem;

namespace {

std::string folder_of(const std::string& path) {
    const upL_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

std::string name_of(const std::string& path) {
    return path.substr(folder_of(path).size());
}

std::string inconsistent(const std::string& path) {
    return "Inconsistent Metadata: \"" + name_of(path) + "\"";
}

}  // namespace

BasicLmdSetReader::BasicLmdSetReader(const std::string& file)
    : path(file), name(LmdName::parse(file)), current(std::make_unique<BasicLmdFileReader>(file)) {
    head = current->header();
    // A single file may bear any name, one with a number too.
    const bool single =
        head.block_size == 0 || (head.total_digits != 0 && head.block_size >= head.total_digits);
    if (single) name.id.reset();
    if (!name.id) {
        files[head.block_id] = file;
        return;
    }
    check_set(*current, *name.id);
    add_search_directory(folder_of(file));
}

void BasicLmdSetReader::check_set(const BasicLmdFileReader& file, upL_t id) const {
    if (file.header().block_id != id || !file.header().same_set(head))
        throw InconsistentMetaData("BasicLmdSetReader::check_set()", inconsistent(file.path()), file.path(),
                                   0);
}

void BasicLmdSetReader::add_search_directory(const std::string& folder) {
    if (!name.id) return;
    std::error_code error;
    fs::directory_iterator entries(folder.empty() ? "." : folder, error);
    if (error)
        throw FileException("BasicLmdSetReader::add_search_directory()", "Unable to read folder.", folder,
                            error.value());
    const std::string wanted = name_of(name.prefix);
    const std::string base = folder.empty() || folder.ends_with('/') ? folder : folder + '/';
    for (; entries != fs::directory_iterator(); entries.increment(error)) {
        const std::string found = entries->path().filename().string();
        if (!found.starts_with(wanted) || !found.ends_with(LMD_EXTENSION) || found.size() < 5) continue;
        const LmdName parts = LmdName::parse(base + found);
        if (!parts.id || name_of(parts.prefix) != wanted || files.contains(*parts.id)) continue;
        try {
            check_set(BasicLmdFileReader(base + found), *parts.id);
            files.emplace(*parts.id, base + found);
        } catch (const FileException&) {
            warnings.push_back(inconsistent(found));
        }
        if (error) break;
    }
}

std::string BasicLmdSetReader::expected_path(upL_t id) const {
    const auto found = files.find(id);
    if (found != files.end()) return found->second;
    return name.id ? lmd_set_name(name.prefix, id) : path;
}

bool BasicLmdSetReader::has_file(upL_t id) const {
    const auto found = files.find(id);
    return found != files.end() && ::access(found->second.c_str(), R_OK) == 0;
}

std::vector<std::string> BasicLmdSetReader::missing_files(upL_t offset, upL_t count) const {
    std::vector<std::string> missing;
    if (count == 0) return missing;
    const upL_t last = (offset + (count - 1)) / head.block();
    for (upL_t id = offset / head.block(); id <= last && missing.size() < MOST_NAMES; id++) {
        if (!has_file(id)) missing.push_back(name_of(expected_path(id)));
    }
    return missing;
}

void BasicLmdSetReader::require_files(upL_t offset, upL_t count) const {
    const std::vector<std::string> missing = missing_files(offset, count);
    if (missing.empty()) return;
    std::string message = "The following needed files are missing or inaccessible:";
    for (const std::string& file : missing) message += "\n    " + file;
    if (missing.size() == MOST_NAMES) message += "\n    ...";
    throw FileException("BasicLmdSetReader::read()", message, path, 0);
}

void BasicLmdSetReader::load_file(upL_t id) {
    if (current->header().block_id == id) return current->start_access();
    const std::string file = expected_path(id);
    std::unique_ptr<BasicLmdFileReader> next;
    try {
        next = std::make_unique<BasicLmdFileReader>(file);
    } catch (const FileException& failure) {
        // Faults of a header tell of themselves; those of the system do not tell which file of the set it is.
        if (failure.error_code == 0) throw;
        throw FileException("BasicLmdSetReader::load_file()", "Unable to open file #" + std::to_string(id),
                            file, failure.error_code);
    }
    check_set(*next, id);
    current = std::move(next);
}

void BasicLmdSetReader::read(const lumo::ParallelContext& ctx, char* out, spL_t offset, upL_t count) {
    const char* const location = "BasicLmdSetReader::read()";
    if (offset < 0) throw FileException(location, "Attempted to read in front of decimal place.", path, 0);
    auto position = static_cast<upL_t>(offset);
    const upL_t end = digits();
    if (position > end || count > end - position) throw FileException(location, "Incomplete read.", path, 0);
    require_files(position, count);
    while (count != 0) {
        load_file(position / head.block());
        const upL_t skip = position % head.block();
        const upL_t length = std::min(count, head.block() - skip);
        current->read(ctx, out, skip, length);
        out += length;
        position += length;
        count -= length;
    }
}

upL_t BasicLmdSetReader::open_run(upL_t offset, upL_t count) {
    const upL_t end = digits();
    if (offset > end || count > end - offset)
        throw FileException("BasicLmdSetReader::open_run()", "Incomplete read.", path, 0);
    const upL_t skip = offset % head.block();
    const upL_t D = current->packing().digits_per_word;
    if (count == 0 || skip % D != 0) return 0;
    const upL_t length = std::min(count, head.block() - skip);
    require_files(offset, length);
    load_file(offset / head.block());
    if (skip > current->digits() || length > current->digits() - skip)
        throw FileException("BasicLmdSetReader::open_run()", "Incomplete read.", current->path(), 0);
    run_start = skip / D;
    return length;
}

}  // namespace DigitViewer2
