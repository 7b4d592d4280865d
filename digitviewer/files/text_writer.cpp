#include "digitviewer/files/text_writer.h"

#include <algorithm>
#include <atomic>

#include "digitviewer/files/digit_text.h"
#include "digitviewer/files/incomplete_files.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"

namespace DigitViewer2 {

using lumo::FileIO::FileException;

BasicTextWriter::BasicTextWriter(const std::string& path, const std::string& first_digits, upL_t radix)
    : name(path), base(radix), start(first_digits.find('.') + 1) {
    if (radix != 10 && radix != 16) lumo::fatal_error("Invalid Base");
    if (start == 0)
        throw FileException("BasicTextWriter::BasicTextWriter()", "No decimal place was found.", path, 0);
    // Known before it is there: an interrupt may come in between.
    IncompleteFiles::add(path);
    file.emplace(path, FileHandle::Mode::create);
    file->write(first_digits.data(), 0, start);
    block = lumo::make_aligned<char>(BLOCK_BYTES);
}

void BasicTextWriter::write(const lumo::ParallelContext& ctx, const char* digits, upL_t offset, upL_t count) {
    while (count != 0) {
        const upL_t length = std::min(count, BLOCK_BYTES);
        std::atomic<bool> good = true;
        for_pieces(ctx, length, [&](upL_t from, upL_t to) {
            if (!text_of_values(base, block.get() + from, digits + from, to - from)) good = false;
        });
        if (!good) throw lumo::InvalidParametersException("BasicTextWriter::write()", "Invalid Digit");
        write_text(ctx, block.get(), offset, length);
        digits += length;
        offset += length;
        count -= length;
    }
}

void BasicTextWriter::write_text(const lumo::ParallelContext&, const char* text, upL_t offset, upL_t count) {
    lumo::require(file.has_value(), "The file is closed.", "BasicTextWriter::write_text()");
    file->write(text, start + offset, count);
}

void BasicTextWriter::close() {
    if (!file) return;
    file->start_sync();
    file->close();
    file.reset();
}

void BasicTextWriter::publish(const std::string& final_path) {
    close();
    FileHandle(name, FileHandle::Mode::read).sync();
    FileHandle::rename(name, final_path);
    IncompleteFiles::remove(name);
}

}  // namespace DigitViewer2
