/// The tokens that both syntaxes of the configuration language share.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lumo::Config {

/// Letters, digits and ! # $ % & ' ( ) * + - . / = ? @ ^ _ | ~
bool is_identifier_character(char c);

/// Walks over a text, which ends at its first NUL or its last byte, and counts its lines. Syntax errors are
/// ParseException "Line <n>: <message>"; the end of the text where a token must follow is
/// EndOfStreamException "Unexpected end of stream.".
class TokenStream {
 public:
    /// `source` must outlive the stream.
    explicit TokenStream(std::string_view source);

    /// Skips whitespace and comments. Returns whether anything follows.
    bool skip_blanks();
    /// Skips whitespace and comments and returns the character that follows, which is not consumed.
    char next_token();
    /// Consumes the character that next_token() returned.
    void advance();
    /// A string, from its opening quote on.
    std::string read_string();
    /// A run of identifier characters, with the blank or line end behind it; may be empty.
    std::string read_identifier();
    /// An optional '-' and digits. A comma may follow only where commas separate elements.
    std::int64_t read_integer(bool comma_may_follow);

    [[noreturn]] void fail(const std::string& message) const;

 private:
    bool ended() const { return at == text.size(); }
    bool at_comment() const { return text.substr(at, 2) == "//"; }
    char peek() const;  ///< throws at the end
    char take();        ///< throws at the end, counts lines
    char take_escaped();
    void skip_comment();

    std::string_view text;
    std::size_t at = 0;
    std::uint64_t line = 1;
};

}  // namespace lumo::Config
