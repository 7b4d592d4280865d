#include "lumo/foundation/config/text_file.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo::Config {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

void append_utf8(std::string& text, char32_t c) {
    const auto continuation = [&](unsigned shift) {
        text += static_cast<char>(0x80 | ((c >> shift) & 0x3F));
    };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | (c >> 6));
        continuation(0);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0 | (c >> 12));
        continuation(6);
        continuation(0);
    } else {
        text += static_cast<char>(0xF0 | (c >> 18));
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

[[noreturn]] void fail(const std::string& path, const char* message, int error) {
    throw FileIO::FileException("parse_file()", message, path, error);
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string read_bytes(const std::string& path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    if (!file) fail(path, "Unable to open file.", errno);
    std::string bytes;
    char block[16384];
    for (;;) {
        errno = 0;
        const std::size_t got = std::fread(block, 1, sizeof block, file.get());
        if (std::ferror(file.get()))
            fail(path, errno == EISDIR ? "The path is a folder." : "Unable to read file.", errno);
        if (got == 0) return bytes;
        bytes.append(block, got);
        if (bytes.size() > MAX_TEXT_FILE_BYTES) fail(path, "The file is too large to be a configuration.", 0);
    }
}

}  // namespace

std::string utf16le_to_utf8(std::string_view bytes) {
    const auto unit = [&](std::size_t i) -> char32_t {
        return static_cast<unsigned char>(bytes[i]) | char32_t(static_cast<unsigned char>(bytes[i + 1])) << 8;
    };
    const auto is_high = [](char32_t c) { return c >= 0xD800 && c < 0xDC00; };
    const auto is_low = [](char32_t c) { return c >= 0xDC00 && c < 0xE000; };

    std::string text;
    text.reserve(bytes.size());
    std::size_t i = 0;
    for (; i + 1 < bytes.size(); i += 2) {
        char32_t c = unit(i);
        if (is_high(c) && i + 3 < bytes.size() && is_low(unit(i + 2))) {
            c = 0x10000 + ((c - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
            i += 2;
        } else if (is_high(c) || is_low(c)) {
            c = REPLACEMENT;
        }
        append_utf8(text, c);
    }
    if (i < bytes.size()) append_utf8(text, REPLACEMENT);
    return text;
}

std::string read_text_file(const std::string& path) {
    std::string bytes = read_bytes(path);
    if (bytes.starts_with("\xFF\xFE")) return utf16le_to_utf8(std::string_view(bytes).substr(2));
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
    return bytes;
}

}  // namespace lumo::Config
