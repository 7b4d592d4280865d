/// The input of a fuzz target as a file with a path.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

/// In memory; the path is a link in a folder of the process, with the extension that readers ask for.
class MemoryFile {
 public:
    MemoryFile(const std::uint8_t* data, std::size_t size, const std::string& extension)
        : descriptor(::memfd_create("fuzz", MFD_CLOEXEC)),
          link("/tmp/velmora-fuzz-" + std::to_string(::getpid()) + extension) {
        [[maybe_unused]] const auto written = ::write(descriptor, data, size);
        const std::string target = "/proc/self/fd/" + std::to_string(descriptor);
        ::unlink(link.c_str());
        [[maybe_unused]] const int made = ::symlink(target.c_str(), link.c_str());
    }
    ~MemoryFile() {
        ::unlink(link.c_str());
        ::close(descriptor);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    const std::string& path() const { return link; }

 private:
    const int descriptor;
    const std::string link;
};

}  // namespace fuzz
