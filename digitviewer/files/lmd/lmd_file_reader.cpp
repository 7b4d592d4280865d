#include "digitviewer/files/lmd/lmd_file_reader.h"

#include <algorithm>
#include <array>

#include "digitviewer/files/digit_text.h"
#include "digitviewer/files/lmd/lmd_names.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

using lumo::FileIO::FileException;

namespace {

/// Words on the stack of a thread that unpacks.
constexpr upL_t PIECE_WORDS = 2048;
constexpr upL_t HEAD_BYTES = 4096;

LmdHeader read_header(const FileHandle& file) {
    std::string bytes;
    // Most headers are short; the rest is read only for one that is not.
    for (const upL_t length : {HEAD_BYTES, LmdHeader::MOST_BYTES}) {
        bytes.resize(length);
        bytes.resize(file.read_some(bytes.data(), 0, length));
        const upL_t end = bytes.find("EndHeader");
        if (bytes.size() < length || (end != std::string::npos && end + 64 < bytes.size())) break;
    }
    return parse_lmd_header(bytes, file.path());
}

}  // namespace

BasicLmdFileReader::BasicLmdFileReader(const std::string& path) : name(path) {
    const char* const location = "BasicLmdFileReader::BasicLmdFileReader()";
    if (is_incomplete_lmd_name(path)) throw FileException(location, "This file is incomplete.", path, 0);
    start_access();
    head = read_header(*file);
    words = &WordPacking::of(head.radix);
    const upL_t size = file->size();
    const upL_t held = (size - std::min(size, head.data_start)) / 8;
    count_of_digits = head.digits_of(head.block_id);
    if (count_of_digits == LmdHeader::UNLIMITED) count_of_digits = held * words->digits_per_word;
}

void BasicLmdFileReader::start_access() {
    if (!file) file.emplace(name, FileHandle::Mode::read);
}

void BasicLmdFileReader::read(const lumo::ParallelContext& ctx, char* out, upL_t offset, upL_t count) {
    if (offset > count_of_digits || count > count_of_digits - offset)
        throw FileException("BasicLmdFileReader::read()", "Incomplete read.", name, 0);
    start_access();
    for_pieces(ctx, count, [&](upL_t from, upL_t to) { read_piece(out + from, offset + from, to - from); });
}

void BasicLmdFileReader::read_piece(char* out, upL_t offset, upL_t count) const {
    const upL_t D = words->digits_per_word;
    std::array<std::uint64_t, PIECE_WORDS> piece;
    while (count != 0) {
        const upL_t skip = offset % D;
        const upL_t length = std::min(count, PIECE_WORDS * D - skip);
        read_words(piece.data(), offset / D, words->words_for(skip + length));
        const std::uint64_t* word = piece.data();
        upL_t done = 0;
        if (skip != 0) {
            done = std::min(length, D - skip);
            unpack_part(*words, out, *word++, skip, done);
        }
        const upL_t whole = (length - done) / D;
        unpack_values(*words, out + done, word, whole);
        done += whole * D;
        if (done < length) unpack_part(*words, out + done, word[whole], 0, length - done);
        out += length;
        offset += length;
        count -= length;
    }
}

void BasicLmdFileReader::read_words(std::uint64_t* out, upL_t first_word, upL_t count) const {
    file->read(out, head.data_start + 8 * first_word, 8 * count);
    bool bad = false;
    for (upL_t i = 0; i < count; i++) bad |= out[i] > words->largest_word;
    if (bad) throw FileException("BasicLmdFileReader::read()", "Invalid Word", name, 0);
}

std::string BasicLmdFileReader::description() const {
    using lumo::Console::format_commas;
    const std::string block = head.block() == LmdHeader::UNLIMITED ? "Unknown" : format_commas(head.block());
    return "digits_per_file:     " + block +
           "\ndigits_per_word:     " + format_commas(words->digits_per_word) +
           "\nwords_in_this_file:  " + format_commas(words->words_for(count_of_digits));
}

}  // namespace DigitViewer2
