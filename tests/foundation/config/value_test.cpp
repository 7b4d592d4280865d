#include "lumo/foundation/config/value.h"

#include <gtest/gtest.h>

#include "lumo/foundation/config/optional_flag.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo::Config {
namespace {

template <typename F>
void expect_failure(F&& f, const std::string& function, const std::string& message) {
    try {
        f();
        ADD_FAILURE() << "accepted: " << message;
    } catch (const StringException& e) {
        EXPECT_EQ(e.function, function);
        EXPECT_EQ(e.message, message);
    }
}

TEST(Value, WrongKindsAreNamed) {
    const Integer number(3);
    const String text("x");
    Object object;
    Array array;
    EXPECT_EQ(number.to_integer(), 3);
    EXPECT_EQ(text.to_string(), "x");
    expect_failure([&] { text.to_integer(); }, "", "Expected Integer, got String.");
    expect_failure([&] { array.to_string(); }, "", "Expected String, got Array.");
    expect_failure([&] { object.to_array(); }, "", "Expected Array, got Object.");
    expect_failure([&] { number.to_object(); }, "", "Expected Object, got Integer.");
    EXPECT_STREQ(kind_name(static_cast<Kind>(9)), "invalid type");
}

TEST(Value, ObjectsRefuseKeysThatStand) {
    Object object;
    object.add_integer("a", 1);
    const std::string message = "Attempted to add an existing key.";
    expect_failure([&] { object.add_integer("a", 2); }, "Object::add_integer()", message);
    expect_failure([&] { object.add_string("a", ""); }, "Object::add_string()", message);
    expect_failure([&] { object.add_array("a"); }, "Object::add_array()", message);
    expect_failure([&] { object.add_object("a"); }, "Object::add_object()", message);
    expect_failure([&] { object.add_node("a", std::make_unique<Array>()); }, "Object::add_node()", message);
    EXPECT_EQ(object.size(), 1u);
    EXPECT_EQ(object.get_integer("a"), 1);
}

TEST(Value, OptionalKeys) {
    Object object;
    object.add_integer("n", 5);
    object.add_string("s", "text");
    object.add_object("o").add_integer("x", 1);
    object.add_array("l").add_array().add_integer(2);
    EXPECT_EQ(object.get_optional_integer("n", 7), 5);
    EXPECT_EQ(object.get_optional_integer("none", 7), 7);
    EXPECT_EQ(object.get_optional_string("s", "other"), "text");
    EXPECT_EQ(object.get_optional_string("none", "other"), "other");
    EXPECT_EQ(object.get_optional_object("o")->get_integer("x"), 1);
    EXPECT_EQ(object.get_optional_object("none"), nullptr);
    EXPECT_EQ((*object.get_optional_array("l"))[0].to_array()[0].to_integer(), 2);
    EXPECT_EQ(object.get_optional_array("none"), nullptr);
    expect_failure([&] { object.get_optional_integer("s", 0); }, "", "Expected Integer, got String.");
    expect_failure([&] { object.get_optional_object("n"); }, "", "Expected Object, got Integer.");
    EXPECT_THROW(object.get("none"), KeyNotFoundException);
    expect_failure([&] { object.get("none"); }, "", "Invalid Key: none");
}

TEST(OptionalFlag, States) {
    for (const char* text : {"auto", "false", "true"})
        EXPECT_EQ(OptionalFlagConfig::from_text(text).to_text(), text);
    EXPECT_TRUE((OptionalFlagSelector{OptionalFlagConfig::from_text("auto"), true}.selected()));
    EXPECT_FALSE((OptionalFlagSelector{OptionalFlagConfig::from_text("false"), true}.selected()));
    EXPECT_TRUE((OptionalFlagSelector{OptionalFlagConfig::from_text("true"), false}.selected()));
    const OptionalFlagConfig unknown{static_cast<OptionalFlagConfig::Mode>(7)};
    expect_failure([&] { unknown.to_text(); }, "OptionalFlagConfig", "Invalid Mode");
    expect_failure([] { OptionalFlagConfig::from_text("maybe"); }, "OptionalFlagConfig", "Invalid Mode");
    expect_failure([&] { OptionalFlagSelector{unknown}.selected(); }, "OptionalFlagSelector", "Invalid Mode");
}

}  // namespace
}  // namespace lumo::Config
