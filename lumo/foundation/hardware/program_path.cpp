#include "lumo/foundation/hardware/program_path.h"

#include <unistd.h>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/fatal.h"

namespace lumo {

std::string read_program_path() {
    std::string path(2048, '\0');
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) {
            Console::print_error("Failed to retrieve path.");
            exit_with_pause(1);
        }
        // A link that fills the buffer may have been cut.
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(2 * path.size());
    }
}

std::string folder_of(const std::string& path) {
    const std::size_t last = path.find_last_of("/\\");
    return last == std::string::npos ? std::string() : path.substr(0, last + 1);
}

}  // namespace lumo
