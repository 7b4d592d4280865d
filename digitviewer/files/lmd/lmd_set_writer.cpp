#include "digitviewer/files/lmd/lmd_set_writer.h"

#include <algorithm>

#include "digitviewer/files/lmd/lmd_names.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"

namespace DigitViewer2 {

BasicLmdSetWriter::BasicLmdSetWriter(const std::string& base_, const std::string& first_digits, upL_t radix,
                                     upL_t digits_per_file, upL_t total_digits)
    : base(base_) {
    header.radix = radix;
    header.first_digits = first_digits;
    header.total_digits = total_digits;
    header.block_size = digits_per_file;
    first_path = file_path(0);
    buffer = lumo::make_aligned<std::uint64_t>(BasicLmdFileWriter::BUFFER_WORDS);
    BasicLmdFileWriter::check(header, first_path);
}

BasicLmdSetWriter::~BasicLmdSetWriter() {
    for (const auto& [id, file] : open_files)
        lumo::Console::print_error("Warning, closing incomplete file\n" + file->incomplete_path());
    if (!open_files.empty() && finished_files != 0)
        lumo::Console::print_line("Files of this set that are finished: " +
                                  lumo::Console::format_commas(finished_files));
}

std::string BasicLmdSetWriter::file_path(upL_t id) const {
    return lmd_path(base, header.block_size, id);
}

BasicLmdFileWriter& BasicLmdSetWriter::open_file(upL_t id) {
    // Of many files that are written in turns only one holds a descriptor.
    if (id != last_id) {
        const auto last = open_files.find(last_id);
        if (last != open_files.end()) last->second->stop_access();
        last_id = id;
    }
    const auto found = open_files.find(id);
    if (found != open_files.end()) return *found->second;
    LmdHeader own = header;
    own.block_id = id;
    auto made = std::make_unique<BasicLmdFileWriter>(file_path(id), own, buffer.get());
    return *open_files.emplace(id, std::move(made)).first->second;
}

void BasicLmdSetWriter::write(const lumo::ParallelContext& ctx, const char* digits, upL_t offset,
                              upL_t count) {
    store(ctx, DigitForm::values, digits, offset, count);
}

void BasicLmdSetWriter::write_text(const lumo::ParallelContext& ctx, const char* text, upL_t offset,
                                   upL_t count) {
    store(ctx, DigitForm::text, text, offset, count);
}

void BasicLmdSetWriter::store(const lumo::ParallelContext& ctx, DigitForm form, const char* digits,
                              upL_t offset, upL_t count) {
    lumo::require(buffer != nullptr, "The files are closed.", "BasicLmdSetWriter::write()");
    while (count != 0) {
        const upL_t id = offset / header.block();
        const upL_t in_file = header.digits_of(id);
        const upL_t skip = offset % header.block();
        if (skip >= in_file)
            throw lumo::InvalidParametersException("BasicLmdSetWriter::write()", "File ID is out of range.");
        const upL_t length = std::min(count, in_file - skip);
        BasicLmdFileWriter& file = open_file(id);
        file.write(ctx, form, digits, skip, length);
        if (file.written() >= in_file) {
            file.finish(header.total_digits);
            finished_files++;
            if (header.total_digits == 0) finished.emplace_back(file.path(), file.total_offset());
            open_files.erase(id);
        }
        digits += length;
        offset += length;
        count -= length;
        end = std::max(end, offset);
    }
}

void BasicLmdSetWriter::close() {
    if (!buffer) return;
    buffer.reset();
    if (header.total_digits != 0) return;
    header.total_digits = end;
    const auto last = open_files.find((end - 1) / header.block());
    if (last != open_files.end() && last->second->written() == header.digits_of(last->first)) {
        last->second->finish(end);
        open_files.erase(last);
    }
    for (const auto& [path, offset] : finished) BasicLmdFileWriter::set_total(path, offset, end);
    finished.clear();
}

}  // namespace DigitViewer2
