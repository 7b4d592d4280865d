#include "digitviewer/files/text_reader.h"

#include <algorithm>
#include <atomic>

#include "digitviewer/files/digit_text.h"
#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

using lumo::FileIO::FileException;

namespace {

constexpr upL_t HEAD_BYTES = 64;

bool is_hexadecimal_letter(char c) {
    return (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

}  // namespace

BasicTextReader::BasicTextReader(const std::string& path, upL_t forced_radix)
    : file(path, FileHandle::Mode::read) {
    const char* const location = "BasicTextReader::BasicTextReader()";
    char bytes[HEAD_BYTES];
    const upL_t length = file.read_some(bytes, 0, HEAD_BYTES);
    const char* const limit = bytes + std::min(length, POINT_SEARCH_BYTES);
    const char* const point = std::find<const char*>(bytes, limit, '.');
    if (point == limit)
        throw FileException(location, "A decimal place was not found within the first 63 bytes of the file.",
                            path, 0);
    const bool letters = std::any_of(bytes, bytes + length, is_hexadecimal_letter);
    if (forced_radix != 0 && forced_radix != 16 && (forced_radix != 10 || letters))
        throw FileException(location, "Invalid Radix", path, 0);
    base = forced_radix != 0 ? forced_radix : letters ? 16 : 10;
    head.assign(bytes, static_cast<upL_t>(point - bytes) + 1);
    count_of_digits = file.size() - head.size();
}

void BasicTextReader::read(const lumo::ParallelContext& ctx, char* out, spL_t offset, upL_t count) {
    if (offset < 0)
        throw FileException("BasicTextReader::read()", "Attempted to read in front of decimal place.",
                            file.path(), 0);
    const upL_t first = head.size() + static_cast<upL_t>(offset);
    std::atomic<bool> good = true;
    for_pieces(ctx, count, [&](upL_t from, upL_t to) {
        file.read(out + from, first + from, to - from);
        if (!values_of_text(base, out + from, out + from, to - from)) good = false;
    });
    if (!good) throw FileException("BasicTextReader::process_txt()", "Invalid Digit", file.path(), 0);
}

}  // namespace DigitViewer2
