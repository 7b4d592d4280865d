/// The values of the configuration language: integers, byte strings, arrays and objects. A value owns its
/// children; a tree may be read by several threads and changed by one.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lumo::Config {

class Array;
class Object;

enum class Kind { INTEGER = 0, STRING = 1, ARRAY = 2, OBJECT = 3 };

/// "Integer", "String", "Array", "Object", and "invalid type" for any other number.
const char* kind_name(Kind kind);

class Value {
 public:
    virtual ~Value() = default;
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    Kind kind() const { return tag; }

    /// The content as the kind that is wanted. Throws ParseException "Expected <wanted>, got <actual>.".
    std::int64_t to_integer() const;
    const std::string& to_string() const;
    const Array& to_array() const;
    const Object& to_object() const;
    Array& to_array();
    Object& to_object();

 protected:
    explicit Value(Kind kind_) : tag(kind_) {}

 private:
    const Kind tag;
};

using ValuePtr = std::unique_ptr<Value>;

class Integer final : public Value {
 public:
    explicit Integer(std::int64_t number) : Value(Kind::INTEGER), value(number) {}
    std::int64_t value;
};

class String final : public Value {
 public:
    explicit String(std::string text) : Value(Kind::STRING), value(std::move(text)) {}
    std::string value;
};

class Array final : public Value {
 public:
    Array() : Value(Kind::ARRAY) {}
    std::size_t size() const { return elements.size(); }
    bool empty() const { return elements.empty(); }
    /// `index` must be below size().
    const Value& operator[](std::size_t index) const { return *elements[index]; }
    Value& operator[](std::size_t index) { return *elements[index]; }

    void add_integer(std::int64_t value) { add_node(std::make_unique<Integer>(value)); }
    void add_string(std::string value) { add_node(std::make_unique<String>(std::move(value))); }
    Array& add_array();
    Object& add_object();
    void add_node(ValuePtr value) { elements.push_back(std::move(value)); }

 private:
    std::vector<ValuePtr> elements;
};

/// Keys with values, kept in the order in which they were added. A comment goes with a key when the object
/// is written.
class Object final : public Value {
 public:
    struct Entry {
        std::string key;
        ValuePtr value;
        std::string comment;
    };

    Object() : Value(Kind::OBJECT) {}
    const std::vector<Entry>& entries() const { return list; }
    std::size_t size() const { return list.size(); }

    /// Each throws InvalidParametersException "Attempted to add an existing key." for a key that stands.
    void add_integer(std::string key, std::int64_t value, std::string comment = {});
    void add_string(std::string key, std::string value, std::string comment = {});
    Array& add_array(std::string key, std::string comment = {});
    Object& add_object(std::string key, std::string comment = {});
    void add_node(std::string key, ValuePtr value, std::string comment = {});

    /// The value of a key, or null.
    const Value* find(std::string_view key) const;
    Value* find(std::string_view key);
    /// The value of a key. Throws KeyNotFoundException "Invalid Key: <key>".
    const Value& get(std::string_view key) const;
    Value& get(std::string_view key);

    std::int64_t get_integer(std::string_view key) const { return get(key).to_integer(); }
    const std::string& get_string(std::string_view key) const { return get(key).to_string(); }
    const Array& get_array(std::string_view key) const { return get(key).to_array(); }
    const Object& get_object(std::string_view key) const { return get(key).to_object(); }

    /// The default, or null, when the key is absent; its kind is checked when it is present.
    std::int64_t get_optional_integer(std::string_view key, std::int64_t otherwise) const;
    std::string get_optional_string(std::string_view key, std::string otherwise) const;
    const Array* get_optional_array(std::string_view key) const;
    const Object* get_optional_object(std::string_view key) const;

 private:
    Value& insert(const char* location, std::string key, ValuePtr value, std::string comment);

    std::vector<Entry> list;
    std::map<std::string, std::size_t, std::less<>> index;  ///< key to its place in the list
};

}  // namespace lumo::Config
