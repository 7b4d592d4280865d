/// One open file of digits. All failures are FileException with the path and errno.
#pragma once

#include <string>

#include "lumo/foundation/types/types.h"

namespace DigitViewer2 {

using lumo::upL_t;

class FileHandle {
 public:
    /// create: to write and read, emptied if it exists. update: the same on a file that exists, kept.
    enum class Mode { read, create, update };

    FileHandle(std::string path, Mode mode);
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle();

    const std::string& path() const { return name; }
    upL_t size() const;
    /// Reads up to `bytes` at `offset`; returns how many the file holds there. Several threads may read.
    upL_t read_some(void* buffer, upL_t offset, upL_t bytes) const;
    /// Reads exactly `bytes`: "Incomplete read." where the file is shorter.
    void read(void* buffer, upL_t offset, upL_t bytes) const;
    /// Of what fills up steps of 2 MiB the system begins to bring the data to the device.
    void write(const void* buffer, upL_t offset, upL_t bytes);
    /// Lets the system begin to bring the data to the device, without waiting for it. 0 bytes: to the end.
    void start_sync(upL_t offset = 0, upL_t bytes = 0);
    /// Waits until the data is on the device.
    void sync();
    /// Tells of errors that the system reports only now. The destructor closes silently.
    void close();

    /// A file that may be replaced, or none, bears the name. One without any permission to write was
    /// protected by its owner, from a superuser too: FileException "The file is write-protected.".
    static void require_replaceable(const std::string& path);
    /// Renames a file, replacing the one that bears the new name if require_replaceable() lets it, and makes
    /// the names durable.
    static void rename(const std::string& from, const std::string& to);

 private:
    std::string name;
    int descriptor;

    [[noreturn]] void fail(const char* location, const char* message) const;
};

}  // namespace DigitViewer2
