#include <algorithm>

#include "digitviewer/files/text_reader.h"
#include "lumo/foundation/errors/exceptions.h"
#include "memory_file.h"

/// Opens the bytes as a text digit file and reads its digits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFile file(data, size, ".txt");
    for (const lumo::upL_t radix : {0, 10, 16}) {
        try {
            DigitViewer2::BasicTextReader reader(file.path(), radix);
            char digits[1000];
            for (lumo::upL_t at = 0; at < reader.digits(); at += sizeof digits)
                reader.read({}, digits, static_cast<lumo::spL_t>(at),
                            std::min<lumo::upL_t>(sizeof digits, reader.digits() - at));
        } catch (const lumo::Exception&) {
            // A file that is refused.
        }
    }
    return 0;
}
