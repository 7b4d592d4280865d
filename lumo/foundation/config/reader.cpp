#include "lumo/foundation/config/reader.h"

#include "lumo/foundation/config/text_file.h"
#include "lumo/foundation/config/token_stream.h"

namespace lumo::Config {

namespace {

/// What both syntaxes share: the choice of a value by its first character.
class Reader {
 public:
    explicit Reader(std::string_view text) : stream(text) {}
    virtual ~Reader() = default;

    ValuePtr read_document() {
        ValuePtr value = read_value();
        if (stream.skip_blanks()) stream.fail("Unexpected text behind the value.");
        return value;
    }

 protected:
    ValuePtr read_value() {
        switch (stream.next_token()) {
            case '{':
                return nested([this] { return read_object(); });
            case '[':
                return nested([this] { return read_array(); });
            case '"':
                return std::make_unique<String>(stream.read_string());
            case ',':
                stream.fail(comma_message());
            case '}':
                stream.fail("Unexpected '}'.");
            case ']':
                stream.fail("Unexpected ']'.");
            default:
                return std::make_unique<Integer>(stream.read_integer(commas_separate()));
        }
    }

    void check_new(const Object& object, const std::string& key) const {
        if (object.find(key) != nullptr) stream.fail("Duplicate key in object.");
    }

    void expect_colon(const char* message) {
        if (stream.next_token() != ':') stream.fail(message);
        stream.advance();
    }

    virtual ValuePtr read_object() = 0;  ///< from behind the opening brace
    virtual ValuePtr read_array() = 0;   ///< from behind the opening bracket
    virtual bool commas_separate() const = 0;
    virtual const char* comma_message() const = 0;  ///< about a comma where a value should stand

    TokenStream stream;

 private:
    /// Reading and freeing a tree take stack space for each level: its depth is bounded.
    template <typename Read>
    ValuePtr nested(const Read& read) {
        if (depth == MAX_DEPTH) stream.fail("Values are nested too deeply.");
        depth++;
        stream.advance();
        ValuePtr value = read();
        depth--;
        return value;
    }

    unsigned depth = 0;
};

class CfgReader final : public Reader {
 public:
    using Reader::Reader;

 private:
    bool commas_separate() const override { return false; }
    const char* comma_message() const override { return "Don't use commas to separate elements."; }

    std::string read_key() {
        const char first = stream.next_token();
        if (first == '"') return stream.read_string();
        if (first == ',') stream.fail(comma_message());
        std::string key = stream.read_identifier();
        if (key.empty()) stream.fail("Expected identifier.");
        return key;
    }

    ValuePtr read_object() override {
        auto object = std::make_unique<Object>();
        while (stream.next_token() != '}') {
            std::string key = read_key();
            check_new(*object, key);
            expect_colon("Expected colon after identifier.");
            object->add_node(std::move(key), read_value());
        }
        stream.advance();
        return object;
    }

    ValuePtr read_array() override {
        auto array = std::make_unique<Array>();
        while (stream.next_token() != ']') array->add_node(read_value());
        stream.advance();
        return array;
    }
};

class StrictReader final : public Reader {
 public:
    using Reader::Reader;

 private:
    bool commas_separate() const override { return true; }
    const char* comma_message() const override { return "Unexpected ','."; }

    /// Whether another element follows, with the comma before it consumed. `first` before the first one.
    bool next_element(char close, bool first) {
        const char token = stream.next_token();
        if (token == close) {
            stream.advance();
            return false;
        }
        if (first) return true;
        if (token != ',') {
            stream.fail(token == '"' && close == '}' ? "Expected ',' before object key string."
                                                     : "Expected ',' before identifier.");
        }
        stream.advance();
        if (stream.next_token() == close) stream.fail(std::string("Unexpected '") + close + "'.");
        return true;
    }

    std::string read_key() {
        const char token = stream.next_token();
        if (token == ',') stream.fail(comma_message());
        if (token != '"') stream.fail("Expected object key string.");
        return stream.read_string();
    }

    ValuePtr read_object() override {
        auto object = std::make_unique<Object>();
        while (next_element('}', object->size() == 0)) {
            std::string key = read_key();
            check_new(*object, key);
            expect_colon("Expected colon after object key string.");
            object->add_node(std::move(key), read_value());
        }
        return object;
    }

    ValuePtr read_array() override {
        auto array = std::make_unique<Array>();
        while (next_element(']', array->empty())) array->add_node(read_value());
        return array;
    }
};

}  // namespace

ValuePtr parse_text(std::string_view text) {
    return CfgReader(text).read_document();
}
ValuePtr parse_file(const std::string& path) {
    return parse_text(read_text_file(path));
}
ValuePtr parse_strict_text(std::string_view text) {
    return StrictReader(text).read_document();
}
ValuePtr parse_strict_file(const std::string& path) {
    return parse_strict_text(read_text_file(path));
}

}  // namespace lumo::Config
