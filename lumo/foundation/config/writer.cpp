#include "lumo/foundation/config/writer.h"

#include <algorithm>

#include "lumo/foundation/config/token_stream.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo::Config {

namespace {

constexpr std::string_view LINE_END = "\r\n";
constexpr std::size_t MAX_INLINE_ELEMENTS = 16;

bool is_plain_identifier(const std::string& key) {
    return !key.empty() && key.find("//") == std::string::npos &&
           std::all_of(key.begin(), key.end(), is_identifier_character);
}

/// Arrays of few plain elements stand on one line.
bool is_inline(const Value& value) {
    if (value.kind() == Kind::OBJECT) return value.to_object().size() == 0;
    if (value.kind() != Kind::ARRAY) return true;
    const Array& array = value.to_array();
    if (array.size() > MAX_INLINE_ELEMENTS) return false;
    for (std::size_t i = 0; i < array.size(); i++)
        if (!is_inline(array[i])) return false;
    return true;
}

class Writer {
 public:
    explicit Writer(bool strict_syntax) : strict(strict_syntax) {}

    std::string write_document(const Value& value) {
        write_value(value, 0);
        out += LINE_END;
        return std::move(out);
    }

 private:
    void write_value(const Value& value, std::size_t level) {
        switch (value.kind()) {
            case Kind::INTEGER:
                out += std::to_string(value.to_integer());
                return;
            case Kind::STRING:
                write_quoted(value.to_string());
                return;
            case Kind::ARRAY:
                write_array(value.to_array(), level);
                return;
            case Kind::OBJECT:
                write_object(value.to_object(), level);
                return;
        }
        throw ParseException("", "Invalid object type: " + std::to_string(static_cast<int>(value.kind())));
    }

    void write_quoted(const std::string& text) {
        out += '"';
        for (const char c : text) {
            if (c == '\0')
                throw InvalidParametersException(strict ? "write_strict()" : "write_cfg()",
                                                 "A string must not hold a NUL character.");
            if (c == '"' || c == '\\') out += '\\';
            out += c;
        }
        out += '"';
    }

    void begin_line(std::size_t level) {
        out += LINE_END;
        out.append(4 * level, ' ');
    }

    void write_array(const Array& array, std::size_t level) {
        const bool one_line = is_inline(array);
        out += '[';
        for (std::size_t i = 0; i < array.size(); i++) {
            if (i > 0 && strict) out += ',';
            if (!one_line)
                begin_line(level + 1);
            else if (i > 0)
                out += ' ';
            write_value(array[i], level + 1);
        }
        if (!one_line) begin_line(level);
        out += ']';
    }

    void write_object(const Object& object, std::size_t level) {
        out += '{';
        const auto& entries = object.entries();
        for (std::size_t i = 0; i < entries.size(); i++) {
            write_entry(entries[i], level + 1);
            if (strict && i + 1 < entries.size()) out += ',';
        }
        if (!entries.empty()) begin_line(level);
        out += '}';
    }

    void write_entry(const Object::Entry& entry, std::size_t level) {
        const bool tall_comment = entry.comment.find('\n') != std::string::npos;
        if (!strict && tall_comment) write_comment_lines(entry.comment, level);
        begin_line(level);
        if (strict || !is_plain_identifier(entry.key))
            write_quoted(entry.key);
        else
            out += entry.key;
        out += strict ? ": " : " : ";
        write_value(*entry.value, level);
        if (!strict && !tall_comment && !entry.comment.empty()) write_comment("   //  ", entry.comment);
    }

    void write_comment_lines(std::string_view comment, std::size_t level) {
        for (;;) {
            const std::size_t end = comment.find('\n');
            begin_line(level);
            write_comment("//  ", comment.substr(0, end));
            if (end == std::string_view::npos) return;
            comment.remove_prefix(end + 1);
        }
    }

    void write_comment(std::string_view lead, std::string_view line) {
        out += lead;
        for (const char c : line)
            if (c != '\r' && c != '\0') out += c;
    }

    const bool strict;
    std::string out;
};

}  // namespace

std::string write_cfg(const Value& value) {
    return Writer(false).write_document(value);
}
std::string write_strict(const Value& value) {
    return Writer(true).write_document(value);
}

}  // namespace lumo::Config
