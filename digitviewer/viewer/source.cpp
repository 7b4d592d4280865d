#include "digitviewer/viewer/source.h"

#include "digitviewer/files/lmd/lmd_set_reader.h"
#include "digitviewer/files/text_reader.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

namespace Console = lumo::Console;

namespace {

/// Text out of a file, for the console: what could act on a terminal is shown as '?'.
std::string printable(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
    }
    return text;
}

}  // namespace

Source Source::open(const std::string& path, const lumo::ParallelContext& parallel) {
    Source source;
    source.path = path;
    source.parallel = parallel;
    if (path.ends_with(LMD_EXTENSION)) {
        auto reader = std::make_unique<BasicLmdSetReader>(path);
        source.lmd = reader.get();
        source.reader = std::move(reader);
    } else if (path.ends_with(".txt")) {
        source.reader = std::make_unique<BasicTextReader>(path);
    } else {
        throw lumo::FileIO::FileException("Source::open()", "Invalid Extension", path, 0);
    }
    return source;
}

std::string Source::folder() const {
    const upL_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

upL_t Source::known_digits() const {
    const upL_t digits = reader->digits();
    return digits == BasicDigitReader::UNKNOWN_DIGITS ? 0 : digits;
}

bool Source::holds(upL_t offset, upL_t count) const {
    const upL_t end = reader->digits();
    return offset <= end && count <= end - offset;
}

bool Source::is_accessible(upL_t offset, upL_t count) const {
    std::vector<std::string> missing;
    const bool within = holds(offset, count);
    if (within && lmd) missing = lmd->missing_files(offset, count);
    if (within && missing.empty()) return true;
    if (!missing.empty()) Console::print_line("The following needed files are missing or inaccessible:", 'R');
    for (const std::string& name : missing) Console::print_line("    " + name);
    if (missing.size() == BasicLmdSetReader::MOST_NAMES) Console::print_line("    ...");
    Console::print_line("This range of digits is not accessible.", 'R');
    Console::set_color('w');
    return false;
}

void Source::print() const {
    std::lock_guard lock(Console::lock());
    const upL_t digits = reader->digits();
    Console::print_line("File: " + path, 'w');
    Console::print_line("Radix:                      " + std::to_string(reader->radix()));
    Console::print_line("First Digits:               " + printable(reader->first_digits()));
    Console::print("Digits after Decimal Place: ");
    Console::print_line(digits == BasicDigitReader::UNKNOWN_DIGITS ? "Unknown - Extended File Format"
                                                                   : Console::format_commas(digits),
                        'G');
    Console::set_color('w');
    if (!lmd) return;
    const upL_t block = lmd->header().block();
    Console::print_line("Digits per File:            " + (block == LmdHeader::UNLIMITED
                                                              ? std::string("Unknown")
                                                              : Console::format_commas(block)));
    Console::print_line(lmd->description());
    print_warnings();
}

void Source::print_warnings() const {
    if (!lmd) return;
    for (const std::string& warning : lmd->take_warnings()) Console::print_error(printable(warning));
}

}  // namespace DigitViewer2
