#include "digitviewer/files/file_handle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

using lumo::FileIO::FileException;

namespace {

constexpr upL_t SYNC_STEP = upL_t(1) << 21;

}  // namespace

FileHandle::FileHandle(std::string path, Mode mode) : name(std::move(path)) {
    // A pipe that bears the name of a file must not be waited for.
    const int flags = mode == Mode::read     ? O_RDONLY | O_NONBLOCK
                      : mode == Mode::update ? O_RDWR
                                             : O_RDWR | O_CREAT | O_TRUNC;
    descriptor = ::open(name.c_str(), flags | O_CLOEXEC, 0644);
    if (descriptor < 0)
        fail("FileHandle::FileHandle()",
             mode == Mode::create ? "Unable to create file." : "Unable to open file.");
}

FileHandle::~FileHandle() {
    if (descriptor >= 0) ::close(descriptor);
}

upL_t FileHandle::size() const {
    struct stat information;
    if (::fstat(descriptor, &information) != 0) fail("FileHandle::size()", "Unable to read file size.");
    return static_cast<upL_t>(information.st_size);
}

upL_t FileHandle::read_some(void* buffer, upL_t offset, upL_t bytes) const {
    upL_t done = 0;
    while (done < bytes) {
        const ssize_t got = ::pread(descriptor, static_cast<char*>(buffer) + done, bytes - done,
                                    static_cast<off_t>(offset + done));
        if (got == 0) break;
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail("FileHandle::read()", "Unable to read file.");
        done += static_cast<upL_t>(got);
    }
    return done;
}

void FileHandle::read(void* buffer, upL_t offset, upL_t bytes) const {
    if (read_some(buffer, offset, bytes) != bytes)
        throw FileException("FileHandle::read()", "Incomplete read.", name, 0);
}

void FileHandle::write(const void* buffer, upL_t offset, upL_t bytes) {
    upL_t done = 0;
    while (done < bytes) {
        const ssize_t put = ::pwrite(descriptor, static_cast<const char*>(buffer) + done, bytes - done,
                                     static_cast<off_t>(offset + done));
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) fail("FileHandle::write()", "Unable to write file.");
        done += static_cast<upL_t>(put);
    }
    // The device works while the next block is made, and little is left to wait for in the end.
    const upL_t from = offset / SYNC_STEP * SYNC_STEP, to = (offset + bytes) / SYNC_STEP * SYNC_STEP;
    if (from < to) start_sync(from, to - from);
}

void FileHandle::start_sync(upL_t offset, upL_t bytes) {
    // Only a hint: sync() tells of failures.
    ::sync_file_range(descriptor, static_cast<off_t>(offset), static_cast<off_t>(bytes),
                      SYNC_FILE_RANGE_WRITE);
}

void FileHandle::sync() {
    // Devices without storage behind them refuse the request: nothing to wait for.
    if (::fdatasync(descriptor) != 0 && errno != EINVAL && errno != EROFS)
        fail("FileHandle::sync()", "Unable to flush file.");
}

void FileHandle::close() {
    const int closing = descriptor;
    descriptor = -1;
    if (::close(closing) != 0 && errno != EINTR) fail("FileHandle::close()", "Unable to close file.");
}

void FileHandle::require_replaceable(const std::string& path) {
    struct stat status;
    if (::stat(path.c_str(), &status) != 0) return;
    const bool has_writers = (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0;
    if (!has_writers || ::access(path.c_str(), W_OK) != 0)
        throw FileException("FileHandle::require_replaceable()", "The file is write-protected.", path,
                            EACCES);
}

void FileHandle::rename(const std::string& from, const std::string& to) {
    require_replaceable(to);
    if (std::rename(from.c_str(), to.c_str()) != 0)
        throw FileException("FileHandle::rename()", "Unable to rename file.", from, errno);
    // The file is in place whether or not the folder can be flushed.
    const auto slash = to.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : to.substr(0, slash + 1);
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return;
    ::fsync(handle);
    ::close(handle);
}

void FileHandle::fail(const char* location, const char* message) const {
    throw FileException(location, message, name, errno);
}

}  // namespace DigitViewer2
