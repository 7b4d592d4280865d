#include "lumo/foundation/config/token_stream.h"

#include "lumo/foundation/errors/exceptions.h"

namespace lumo::Config {

namespace {

bool is_whitespace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool is_digit(char c) {
    return '0' <= c && c <= '9';
}

}  // namespace

bool is_identifier_character(char c) {
    if (is_digit(c) || ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z')) return true;
    return c != '\0' && std::string_view("!#$%&'()*+-./=?@^_|~").find(c) != std::string_view::npos;
}

TokenStream::TokenStream(std::string_view source) : text(source.substr(0, source.find('\0'))) {}

void TokenStream::fail(const std::string& message) const {
    throw ParseException("", "Line " + std::to_string(line) + ": " + message);
}

char TokenStream::peek() const {
    if (ended()) throw EndOfStreamException("", "Unexpected end of stream.");
    return text[at];
}

char TokenStream::take() {
    const char c = peek();
    at++;
    if (c == '\n') line++;
    return c;
}

void TokenStream::skip_comment() {
    while (!ended() && take() != '\n') {
    }
}

bool TokenStream::skip_blanks() {
    while (!ended()) {
        if (at_comment())
            skip_comment();
        else if (is_whitespace(text[at]))
            take();
        else
            return true;
    }
    return false;
}

char TokenStream::next_token() {
    skip_blanks();
    return peek();
}

void TokenStream::advance() {
    take();
}

char TokenStream::take_escaped() {
    const char c = take();
    if (c != '\\' && c != '"') fail(std::string("Invalid escape character: ") + c);
    return c;
}

std::string TokenStream::read_string() {
    std::string result;
    take();
    for (;;) {
        const char c = take();
        if (c == '"') return result;
        result += c == '\\' ? take_escaped() : c;
    }
}

std::string TokenStream::read_identifier() {
    std::string result;
    for (;;) {
        const char c = peek();
        if (c == ':' || c == '"') return result;
        if (at_comment()) {
            skip_comment();
            return result;
        }
        if (c == '\r' && text.substr(at, 2) == "\r\n") {
            at++;
            take();
            return result;
        }
        if (c == ' ' || c == '\t' || c == '\n') {
            take();
            return result;
        }
        if (c == '\\') {
            take();
            result += take_escaped();
        } else if (is_identifier_character(c)) {
            result += take();
        } else {
            fail("Invalid character in identifier.");
        }
    }
}

std::int64_t TokenStream::read_integer(bool comma_may_follow) {
    const bool negative = peek() == '-';
    if (negative) take();
    if (ended() || !is_digit(text[at])) fail("Invalid integer literal.");

    constexpr std::int64_t LARGEST_TENTH = 922337203685477580;
    // Gathered below zero, where the range is wider by one.
    std::int64_t value = 0;
    for (; !ended() && is_digit(text[at]); at++) {
        const int digit = text[at] - '0';
        const int last_digit = negative ? 8 : 7;
        if (value < -LARGEST_TENTH || (value == -LARGEST_TENTH && digit > last_digit))
            fail("Integer literal is too large.");
        value = value * 10 - digit;
    }

    if (!ended() && !is_whitespace(text[at]) && text[at] != ']' && text[at] != '}' && !at_comment()) {
        if (text[at] != ',') fail("Invalid integer literal.");
        if (!comma_may_follow) fail("Don't use commas to separate elements.");
    }
    return negative ? value : -value;
}

}  // namespace lumo::Config
