#include "digitviewer/files/lmd/lmd_file_writer.h"

#include <algorithm>
#include <atomic>

#include "digitviewer/files/digit_text.h"
#include "digitviewer/files/incomplete_files.h"
#include "digitviewer/files/lmd/lmd_names.h"
#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

using lumo::FileIO::FileException;

namespace {

constexpr upL_t SMALLEST_PIECE = 1 << 12;  // words

void write_total(FileHandle& file, upL_t offset, upL_t total) {
    file.write(padded_total(total).data(), offset, TOTAL_DIGITS_WIDTH);
}

}  // namespace

void BasicLmdFileWriter::check(const LmdHeader& header, const std::string& path) {
    const char* const location = "BasicLmdFileWriter::BasicLmdFileWriter()";
    if (header.radix != 10 && header.radix != 16) throw FileException(location, "Unsupported Radix", path, 0);
    if (header.block_size != 0 && header.block_size < LmdHeader::SMALLEST_BLOCK)
        throw FileException(location, "Invalid Digits per File", path, 0);
    if (header.digits_of(header.block_id) == 0)
        throw lumo::InvalidParametersException(location, "File ID is out of range.");
    const auto unfit = [](char c) { return static_cast<unsigned char>(c) < ' '; };
    if (std::any_of(header.first_digits.begin(), header.first_digits.end(), unfit) ||
        header.first_digits.size() > LmdHeader::MOST_BYTES / 2)
        throw lumo::InvalidParametersException(location, "Invalid first digits.");
}

BasicLmdFileWriter::BasicLmdFileWriter(std::string path, const LmdHeader& header,
                                       std::uint64_t* raw_io_buffer)
    : name(std::move(path)), incomplete(incomplete_lmd_name(name)), buffer(raw_io_buffer) {
    check(header, name);
    words = &WordPacking::of(header.radix);
    LmdHeader unfinished = header;
    unfinished.total_digits = 0;
    const LmdHeaderText text = make_lmd_header(unfinished);
    // Known before it is there: an interrupt may come in between.
    IncompleteFiles::add(incomplete);
    file.emplace(incomplete, FileHandle::Mode::create);
    file->write(text.text.data(), 0, text.text.size());
    data_start = text.text.size();
    offset_of_total = text.total_offset;
}

void BasicLmdFileWriter::start_access() {
    if (!file) file.emplace(incomplete, FileHandle::Mode::update);
}

void BasicLmdFileWriter::stop_access() {
    if (!file) return;
    file->close();
    file.reset();
}

void BasicLmdFileWriter::write(const lumo::ParallelContext& ctx, DigitForm form, const char* digits,
                               upL_t offset, upL_t count) {
    start_access();
    const upL_t D = words->digits_per_word;
    count_of_digits += count;
    while (count != 0) {
        const upL_t skip = offset % D;
        upL_t length;
        if (skip != 0 || count < D) {
            length = std::min(count, D - skip);
            store_digits_B(form, digits, offset / D, skip, length);
        } else {
            const upL_t whole = std::min(count / D, BUFFER_WORDS);
            std::atomic<bool> good = true;
            for_pieces(
                ctx, whole,
                [&](upL_t from, upL_t to) {
                    if (!pack_digits(*words, form, buffer + from, digits + from * D, to - from)) good = false;
                },
                SMALLEST_PIECE);
            if (!good)
                throw lumo::InvalidParametersException("BasicLmdFileWriter::store_digits_B()",
                                                       "Invalid Digit");
            file->write(buffer, data_start + 8 * (offset / D), 8 * whole);
            length = whole * D;
        }
        digits += length;
        offset += length;
        count -= length;
    }
}

void BasicLmdFileWriter::store_digits_B(DigitForm form, const char* digits, upL_t word, upL_t skip,
                                        upL_t count) {
    char values[19];
    std::uint64_t packed = 0;
    // Beyond the end of the file stand zeros.
    if (file->read_some(&packed, data_start + 8 * word, 8) != 8) packed = 0;
    unpack_values(*words, values, &packed, 1);
    bool good = true;
    if (form == DigitForm::text)
        good = values_of_text(words->radix, values + skip, digits, count);
    else
        std::copy_n(digits, count, values + skip);
    if (!good || !pack_digits(*words, DigitForm::values, &packed, values, 1))
        throw lumo::InvalidParametersException("BasicLmdFileWriter::store_digits_B()", "Invalid Digit");
    file->write(&packed, data_start + 8 * word, 8);
}

void BasicLmdFileWriter::finish(upL_t total_digits) {
    start_access();
    write_total(*file, offset_of_total, total_digits);
    file->sync();
    stop_access();
    FileHandle::rename(incomplete, name);
    IncompleteFiles::remove(incomplete);
}

void BasicLmdFileWriter::set_total(const std::string& path, upL_t total_offset, upL_t total_digits) {
    FileHandle finished(path, FileHandle::Mode::update);
    write_total(finished, total_offset, total_digits);
    finished.sync();
    finished.close();
}

}  // namespace DigitViewer2
