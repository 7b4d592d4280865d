#include "lumo/foundation/config/value.h"

#include <gtest/gtest.h>

#include "failures.h"
#include "lumo/foundation/config/optional_flag.h"

namespace lumo::Config {
namespace {

TEST(Value, WrongKindsAreNamed) {
    const Integer number(3);
    const String text("x");
    Object object;
    Array array;
    EXPECT_EQ(failure_of([&] { text.to_integer(); }), "ParseException: Expected Integer, got String.");
    EXPECT_EQ(failure_of([&] { array.to_string(); }), "ParseException: Expected String, got Array.");
    EXPECT_EQ(failure_of([&] { object.to_array(); }), "ParseException: Expected Array, got Object.");
    EXPECT_EQ(failure_of([&] { number.to_object(); }), "ParseException: Expected Object, got Integer.");
    EXPECT_STREQ(kind_name(static_cast<Kind>(9)), "invalid type");
}

TEST(Value, ObjectsRefuseKeysThatStand) {
    Object object;
    object.add_integer("a", 1);
    const auto expect = [](const char* location, auto&& add) {
        EXPECT_EQ(failure_of(add), std::string("InvalidParametersException Object::") + location +
                                       "(): Attempted to add an existing key.");
    };
    expect("add_integer", [&] { object.add_integer("a", 2); });
    expect("add_string", [&] { object.add_string("a", ""); });
    expect("add_array", [&] { object.add_array("a"); });
    expect("add_object", [&] { object.add_object("a"); });
    expect("add_node", [&] { object.add_node("a", std::make_unique<Array>()); });
    EXPECT_EQ(object.size(), 1u);
    EXPECT_EQ(object.get_integer("a"), 1);
}

TEST(Value, OptionalKeys) {
    Object object;
    object.add_integer("n", 5);
    object.add_string("s", "text");
    object.add_object("o").add_integer("x", 1);
    object.add_array("l").add_array().add_integer(2);
    EXPECT_EQ(object.get_optional_integer("n", 7) + object.get_optional_integer("none", 7), 5 + 7);
    EXPECT_EQ(object.get_optional_string("s", "other") + object.get_optional_string("none", "x"), "textx");
    EXPECT_EQ(object.get_optional_object("o")->get_integer("x"), 1);
    EXPECT_EQ((*object.get_optional_array("l"))[0].to_array()[0].to_integer(), 2);
    EXPECT_FALSE(object.get_optional_object("none") || object.get_optional_array("none"));
    EXPECT_EQ(message_of([&] { object.get_optional_integer("s", 0); }), "Expected Integer, got String.");
    EXPECT_EQ(message_of([&] { object.get_optional_object("n"); }), "Expected Object, got Integer.");
    EXPECT_EQ(failure_of([&] { object.get("none"); }), "KeyNotFoundException: Invalid Key: none");
}

TEST(OptionalFlag, States) {
    for (const char* text : {"auto", "false", "true"})
        EXPECT_EQ(OptionalFlagConfig::from_text(text).to_text(), text);
    EXPECT_TRUE((OptionalFlagSelector{OptionalFlagConfig::from_text("auto"), true}.selected()));
    EXPECT_FALSE((OptionalFlagSelector{OptionalFlagConfig::from_text("false"), true}.selected()));
    EXPECT_TRUE((OptionalFlagSelector{OptionalFlagConfig::from_text("true"), false}.selected()));
    const OptionalFlagConfig unknown{static_cast<OptionalFlagConfig::Mode>(7)};
    const std::string config = "InvalidParametersException OptionalFlagConfig: Invalid Mode";
    EXPECT_EQ(failure_of([&] { unknown.to_text(); }), config);
    EXPECT_EQ(failure_of([] { OptionalFlagConfig::from_text("maybe"); }), config);
    EXPECT_EQ(failure_of([&] { OptionalFlagSelector{unknown}.selected(); }),
              "InvalidParametersException OptionalFlagSelector: Invalid Mode");
}

}  // namespace
}  // namespace lumo::Config
