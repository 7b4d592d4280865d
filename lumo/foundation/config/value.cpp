#include "lumo/foundation/config/value.h"

#include "lumo/foundation/errors/exceptions.h"

namespace lumo::Config {

const char* kind_name(Kind kind) {
    switch (kind) {
        case Kind::INTEGER:
            return "Integer";
        case Kind::STRING:
            return "String";
        case Kind::ARRAY:
            return "Array";
        case Kind::OBJECT:
            return "Object";
    }
    return "invalid type";
}

namespace {

template <typename T, typename V>
T& as(V& value, Kind wanted) {
    if (value.kind() != wanted)
        throw ParseException(
            "", std::string("Expected ") + kind_name(wanted) + ", got " + kind_name(value.kind()) + ".");
    return static_cast<T&>(value);
}

}  // namespace

std::int64_t Value::to_integer() const {
    return as<const Integer>(*this, Kind::INTEGER).value;
}
const std::string& Value::to_string() const {
    return as<const String>(*this, Kind::STRING).value;
}
const Array& Value::to_array() const {
    return as<const Array>(*this, Kind::ARRAY);
}
const Object& Value::to_object() const {
    return as<const Object>(*this, Kind::OBJECT);
}
Array& Value::to_array() {
    return as<Array>(*this, Kind::ARRAY);
}
Object& Value::to_object() {
    return as<Object>(*this, Kind::OBJECT);
}

Array& Array::add_array() {
    add_node(std::make_unique<Array>());
    return elements.back()->to_array();
}

Object& Array::add_object() {
    add_node(std::make_unique<Object>());
    return elements.back()->to_object();
}

Value& Object::insert(const char* location, std::string key, ValuePtr value, std::string comment) {
    if (!index.emplace(key, list.size()).second)
        throw InvalidParametersException(location, "Attempted to add an existing key.");
    list.push_back({std::move(key), std::move(value), std::move(comment)});
    return *list.back().value;
}

void Object::add_integer(std::string key, std::int64_t value, std::string comment) {
    insert("Object::add_integer()", std::move(key), std::make_unique<Integer>(value), std::move(comment));
}

void Object::add_string(std::string key, std::string value, std::string comment) {
    insert("Object::add_string()", std::move(key), std::make_unique<String>(std::move(value)),
           std::move(comment));
}

Array& Object::add_array(std::string key, std::string comment) {
    return insert("Object::add_array()", std::move(key), std::make_unique<Array>(), std::move(comment))
        .to_array();
}

Object& Object::add_object(std::string key, std::string comment) {
    return insert("Object::add_object()", std::move(key), std::make_unique<Object>(), std::move(comment))
        .to_object();
}

void Object::add_node(std::string key, ValuePtr value, std::string comment) {
    insert("Object::add_node()", std::move(key), std::move(value), std::move(comment));
}

const Value* Object::find(std::string_view key) const {
    const auto found = index.find(key);
    return found == index.end() ? nullptr : list[found->second].value.get();
}

Value* Object::find(std::string_view key) {
    return const_cast<Value*>(static_cast<const Object&>(*this).find(key));
}

const Value& Object::get(std::string_view key) const {
    const Value* value = find(key);
    if (value == nullptr) throw KeyNotFoundException("", "Invalid Key: " + std::string(key));
    return *value;
}

Value& Object::get(std::string_view key) {
    return const_cast<Value&>(static_cast<const Object&>(*this).get(key));
}

std::int64_t Object::get_optional_integer(std::string_view key, std::int64_t otherwise) const {
    const Value* value = find(key);
    return value == nullptr ? otherwise : value->to_integer();
}

std::string Object::get_optional_string(std::string_view key, std::string otherwise) const {
    const Value* value = find(key);
    return value == nullptr ? std::move(otherwise) : value->to_string();
}

const Array* Object::get_optional_array(std::string_view key) const {
    const Value* value = find(key);
    return value == nullptr ? nullptr : &value->to_array();
}

const Object* Object::get_optional_object(std::string_view key) const {
    const Value* value = find(key);
    return value == nullptr ? nullptr : &value->to_object();
}

}  // namespace lumo::Config
