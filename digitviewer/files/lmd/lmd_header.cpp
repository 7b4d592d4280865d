#include "digitviewer/files/lmd/lmd_header.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"

namespace DigitViewer2 {

using lumo::FileIO::FileException;

namespace {

constexpr std::string_view MAGIC = "#Compressed Digit File";
constexpr std::string_view BLANKS = " \t";

/// Reads lines of a header and remembers where it is.
class HeaderParser {
 public:
    HeaderParser(std::string_view text, const std::string& name) : bytes(text), path(name) {}

    LmdHeader run() {
        take_line();  // the magic line
        for (;;) {
            const std::string_view line = take_line();
            if (line == "EndHeader") break;
            if (!line.empty()) take_entry(line);
        }
        take_terminator();
        check();
        return header;
    }

 private:
    [[noreturn]] void fail(const std::string& message) const {
        throw FileException("BasicLmdFileReader::BasicLmdFileReader()", message, path, 0);
    }

    std::string_view take_line() {
        const upL_t end = bytes.find('\n', position);
        if (end == std::string_view::npos) fail(version ? "Incomplete Header" : "No version # found.");
        std::string_view line = bytes.substr(position, end - position);
        position = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        return line;
    }

    void take_terminator() {
        while (position < bytes.size() && (bytes[position] == '\r' || bytes[position] == '\n')) position++;
        if (position >= bytes.size() || bytes[position] != '\0') fail("Incomplete Header");
        header.data_start = position + 1;
    }

    void take_entry(std::string_view line) {
        const upL_t colon = line.find(':');
        if (colon == std::string_view::npos) return;
        const std::string_view key = line.substr(0, colon);
        std::string_view value = line.substr(colon + 1);
        value.remove_prefix(std::min(value.find_first_not_of(BLANKS), value.size()));
        value = value.substr(0, value.find_last_not_of(BLANKS) + 1);
        if (key == "FileVersion") version = value;
        if (key == "FirstDigits") header.first_digits = value;
        if (key == "Base") header.radix = *(radix = number(line, value));
        if (key == "TotalDigits") header.total_digits = number(line, value);
        if (key == "Blocksize") header.block_size = *(block_size = number(line, value));
        if (key == "BlockID") header.block_id = number(line, value);
    }

    upL_t number(std::string_view line, std::string_view value) const {
        upL_t n = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), n);
        if (error != std::errc() || end != value.data() + value.size())
            fail("Invalid Header: " + std::string(line.substr(0, 80)));
        return n;
    }

    void check() const {
        if (!version) fail("No version # found.");
        if (*version != "1.0.0" && *version != "1.1.0")
            fail(
                "This .lmd file is of a later format version.\n"
                "This version of the digit viewer is unable to view this file.");
        if (!block_size || (*block_size != 0 && *block_size < LmdHeader::SMALLEST_BLOCK))
            fail("Invalid Digits per File");
        const upL_t start = header.start_of(header.block_id);
        if (header.total_digits != 0 ? start >= header.total_digits : start == LmdHeader::UNLIMITED) {
            using lumo::Console::format_commas;
            const upL_t end = start + std::min(header.block_size, LmdHeader::UNLIMITED - start);
            fail("This file is out of range.\nStart:        " + format_commas(start) + "\nEnd:          " +
                 format_commas(end) + "\nTotal Digits: " + format_commas(header.total_digits));
        }
        if (!radix || (*radix != 10 && *radix != 16)) fail("Unsupported Radix");
    }

    const std::string_view bytes;
    const std::string& path;
    upL_t position = 0;
    LmdHeader header;
    std::optional<std::string_view> version;
    std::optional<upL_t> radix, block_size;
};

void append_entry(std::string& text, const char* key, const std::string& value) {
    text.append(key).append(":\t").append(value).append("\r\n\r\n");
}

}  // namespace

upL_t LmdHeader::block() const {
    const upL_t size = block_size == 0 ? UNLIMITED : block_size;
    return total_digits == 0 ? size : std::min(size, total_digits);
}

upL_t LmdHeader::start_of(upL_t id) const {
    upL_t start;
    if (id == 0) return 0;
    return __builtin_mul_overflow(id, block(), &start) ? UNLIMITED : start;
}

upL_t LmdHeader::digits_of(upL_t id) const {
    const upL_t start = start_of(id);
    const upL_t end = total_digits == 0 ? UNLIMITED : total_digits;
    return start >= end ? 0 : std::min(block(), end - start);
}

bool LmdHeader::same_set(const LmdHeader& other) const {
    return radix == other.radix && first_digits == other.first_digits && total_digits == other.total_digits &&
           block_size == other.block_size;
}

LmdHeader parse_lmd_header(std::string_view bytes, const std::string& path) {
    return HeaderParser(bytes, path).run();
}

std::string padded_total(upL_t total) {
    const std::string digits = std::to_string(total);
    return std::string(TOTAL_DIGITS_WIDTH - digits.size(), '0') + digits;
}

LmdHeaderText make_lmd_header(const LmdHeader& header) {
    LmdHeaderText made;
    std::string& text = made.text;
    text.append(MAGIC).append("\r\n\r\n");
    append_entry(text, "FileVersion", "1.1.0");
    append_entry(text, "Base", std::to_string(header.radix));
    append_entry(text, "FirstDigits", header.first_digits);
    append_entry(text, "TotalDigits", padded_total(header.total_digits));
    made.total_offset = text.size() - 4 - TOTAL_DIGITS_WIDTH;
    append_entry(text, "Blocksize", std::to_string(header.block_size));
    append_entry(text, "BlockID", std::to_string(header.block_id));
    text.append("EndHeader\r\n\r\n").append(1, '\0');
    return made;
}

}  // namespace DigitViewer2
