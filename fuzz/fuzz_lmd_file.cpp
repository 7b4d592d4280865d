#include <algorithm>

#include "digitviewer/files/lmd/lmd_set_reader.h"
#include "lumo/foundation/errors/exceptions.h"
#include "memory_file.h"

/// Opens the bytes as a compressed digit file and reads digits at its start and its end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFile file(data, size, ".lmd");
    try {
        DigitViewer2::BasicLmdSetReader reader(file.path());
        char digits[1000];
        const lumo::upL_t held = reader.digits();
        const lumo::upL_t count = std::min<lumo::upL_t>(held, sizeof digits);
        reader.description();
        reader.missing_files(0, count);
        reader.read({}, digits, 0, count);
        reader.read({}, digits, static_cast<lumo::spL_t>((held - count) / 2), count);
        reader.open_run(0, count);
    } catch (const lumo::Exception&) {
        // A file that is refused.
    }
    return 0;
}
