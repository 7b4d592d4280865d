// Statistics and conversions.

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "digitviewer/files/digit_text.h"
#include "digitviewer/files/file_names.h"
#include "digitviewer/files/lmd/lmd_set_reader.h"
#include "digitviewer/files/lmd/lmd_set_writer.h"
#include "digitviewer/files/text_writer.h"
#include "digitviewer/viewer/choices.h"
#include "digitviewer/viewer/copy_digits.h"
#include "digitviewer/viewer/digit_statistics.h"
#include "digitviewer/viewer/questions.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

namespace Console = lumo::Console;

namespace {

constexpr upL_t LEAST_TO_COMPRESS = LmdHeader::SMALLEST_BLOCK;
constexpr upL_t SHOWN_DIGITS = 50;

/// The digits before the point, and the first ones behind it.
std::string sample_digits(const Source& source) {
    const std::string& head = source.reader->first_digits();
    if (source.lmd || head.find('.') != head.size() - 1) return head;
    std::string digits(std::min(SHOWN_DIGITS, source.known_digits()), '\0');
    source.reader->read({}, digits.data(), 0, digits.size());
    text_of_values(source.reader->radix(), digits.data(), digits.data(), digits.size());
    return head + digits;
}

/// Makes the folder where it is missing.
void prepare_folder(const std::string& folder) {
    std::error_code error;
    if (!folder.empty()) std::filesystem::create_directories(folder, error);
    if (error)
        throw lumo::FileIO::FileException("prepare_folder()", "Unable to create folder.", folder,
                                          error.value());
}

struct Destination {
    std::string base;       ///< folder and name of the files
    upL_t digits_per_file;  ///< 0 for a single one
};

Destination ask_destination(const Source& source, bool single_allowed) {
    std::string name;
    while (name.empty()) name = ask_text("Enter a name for the digits:");
    std::string folder = ask_text("\nEnter the destination path (SPACE for default):");
    if (folder.find_first_not_of(' ') == std::string::npos) folder = source.folder();
    if (!folder.empty() && !folder.ends_with('/')) folder += '/';
    prepare_folder(folder);
    Console::new_line();
    const upL_t digits = single_allowed ? ask_number("Digits per file (0 for single file): ", 0, ~upL_t(0))
                                        : ask_number("Digits per file: ", 1, ~upL_t(0));
    return {folder + name + (source.reader->radix() == 10 ? " - Dec" : " - Hex"), digits};
}

/// Nothing that stands is written over: it may be what the digits are read from.
void refuse_existing(const std::string& path) {
    std::error_code error;
    if (std::filesystem::exists(path, error))
        throw lumo::FileIO::FileException("refuse_existing()", "File already exists.", path, EEXIST);
}

void compress(const Source& source, const Destination& destination, upL_t total, upL_t from, upL_t to) {
    BasicLmdSetWriter writer(destination.base, sample_digits(source), source.reader->radix(),
                             destination.digits_per_file, total);
    const upL_t block = std::max<upL_t>(writer.block(), 1);
    for (upL_t id = from / block; id <= (to - 1) / block; id++) refuse_existing(writer.file_path(id));
    Work work("Compressing:", to - from);
    copy_digits(*source.reader, writer, from, to, source.parallel, work.node());
    // Of a part of a set with no known total the total stays unknown.
    if (total != 0) writer.close();
    work.finish();
    Console::print_label_line("First File", writer.file_path(from / block), 'G');
}

/// Prints why, and returns false, when there is nothing to compress.
bool has_digits(const Source& source) {
    if (source.reader->digits() != 0) return true;
    Console::print_line("No Digits to Recompress.", 'R');
    Console::set_color('w');
    return false;
}

bool enough(upL_t digits) {
    if (digits >= LEAST_TO_COMPRESS) return true;
    Console::print_line("Too few digits to compress.", 'R');
    Console::set_color('w');
    return false;
}

}  // namespace

void compute_statistics(const Source& source) {
    const upL_t count = ask_digits(source, "Digits to Count");
    if (!source.is_accessible(0, count)) return;
    Work work("Counting:", count);
    const DigitStatistics statistics = read_statistics(*source.reader, count, source.parallel, work.node());
    work.finish();
    Console::new_line();
    Console::print(statistics_text(statistics, source.reader->first_digits()), 'G');
    Console::set_color('w');
    Console::new_line();
    Console::print_line("Hash(A - B) are the digits from A - B as an integer modulo (2^61 - 1)");
}

void extract_text(const Source& source) {
    std::string path = ask_text("Enter the path of the destination file:");
    if (path.empty() || path.ends_with('/'))
        throw lumo::InvalidParametersException("", "No file name was given.");
    if (!path.ends_with(".txt")) path += ".txt";
    refuse_existing(path);
    const upL_t count = ask_digits(source, "Digits to Extract");
    if (!source.is_accessible(0, count)) return;
    BasicTextWriter writer(incomplete_name(path), source.reader->first_digits(), source.reader->radix());
    Work work("Extracting:", count);
    copy_digits(*source.reader, writer, 0, count, source.parallel, work.node());
    writer.publish(path);
    work.finish();
    Console::print_label_line("File", path, 'G');
}

void compress_all(const Source& source) {
    if (!has_digits(source)) return;
    const upL_t count = ask_digits(source, "Digits to Compress");
    if (!enough(count) || !source.is_accessible(0, count)) return;
    compress(source, ask_destination(source, true), count, 0, count);
}

void compress_subset(const Source& source) {
    if (!has_digits(source)) return;
    const upL_t start = ask_number("Starting Digit: ", 1, ~upL_t(0)) - 1;
    const upL_t end = ask_number("Ending Digit: ", start + 1, ~upL_t(0));
    const upL_t known = source.known_digits();
    if (!enough(known == 0 ? end - start : known)) return;
    if (known != 0 && !source.is_accessible(start, end - start)) return;
    const Destination destination = ask_destination(source, false);
    // Files are written whole: those that hold digits of the range.
    const upL_t block = destination.digits_per_file;
    const upL_t from = start / block * block;
    upL_t to = (end - 1) / block * block + block;
    if (known != 0) to = std::min(to, known);
    Console::print_line("Files " + std::to_string(from / block) + " - " + std::to_string((end - 1) / block) +
                        " hold the digits " + Console::format_commas(from + 1) + " - " +
                        Console::format_commas(to));
    if (!source.is_accessible(from, to - from)) return;
    compress(source, destination, known, from, to);
}

void add_search_directory(const Source& source) {
    source.lmd->add_search_directory(ask_text("Enter the path of the folder:"));
    source.print_warnings();
}

}  // namespace DigitViewer2
