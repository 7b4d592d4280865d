#include "lumo/foundation/config/reader.h"

#include <gtest/gtest.h>

#include "failures.h"
#include "lumo/foundation/config/text_file.h"
#include "temp_folder.h"

namespace lumo::Config {
namespace {

std::string cfg_failure(std::string_view text) {
    return message_of([&] { parse_text(text); });
}
std::string strict_failure(std::string_view text) {
    return message_of([&] { parse_strict_text(text); });
}

using Cases = std::vector<std::pair<const char*, const char*>>;

TEST(CfgReader, AcceptsTextInEveryForm) {
    const ValuePtr value = parse_text("{ a : 1 b:2 \"c d\":\"x\"e:{}f:[]}");
    const Object& object = value->to_object();
    ASSERT_EQ(object.size(), 5u);
    EXPECT_EQ(object.get_integer("a"), 1);
    EXPECT_EQ(object.get_integer("b"), 2);
    EXPECT_EQ(object.get_string("c d"), "x");
    EXPECT_EQ(object.get_object("e").size(), 0u);
    EXPECT_TRUE(object.get_array("f").empty());

    const ValuePtr comments = parse_text(
        "// head\r\n{ // open\n key// a comment ends a key\n : // colon\n 7// seven\n other\r\n:\"//no\n\"}"
        "// end");
    EXPECT_EQ(comments->to_object().get_integer("key"), 7);
    EXPECT_EQ(comments->to_object().get_string("other"), "//no\n");

    const ValuePtr names = parse_text(R"({ a/b.c-d=(e)|~ : 1 q\"\\r : 2 9 : 3 })");
    EXPECT_EQ(names->to_object().get_integer("a/b.c-d=(e)|~"), 1);
    EXPECT_EQ(names->to_object().get_integer("q\"\\r"), 2);
    EXPECT_EQ(names->to_object().get_integer("9"), 3);

    const ValuePtr formula =
        parse_text("{ Divide : [ {AGM : {Sqrt : 2}} {LinearCombination : [[2 {Pi : {}}]]} ] }");
    const Array& operands = formula->to_object().get_array("Divide");
    EXPECT_EQ(operands[0].to_object().get_object("AGM").get_integer("Sqrt"), 2);
    const Array& term = operands[1].to_object().get_array("LinearCombination")[0].to_array();
    EXPECT_NE(term[1].to_object().find("Pi"), nullptr);
}

TEST(CfgReader, CommasAreRefusedEverywhere) {
    const std::string message = "Line 1: Don't use commas to separate elements.";
    for (const char* text : {"{ a : 1, b : 2 }", "{ a : \"x\", b : 2 }", "[1,2]", "[1 , 2]", "[\"a\",2]", ",",
                             "{ , a : 1 }", "{a : , 1}"})
        EXPECT_EQ(cfg_failure(text), message) << text;
}

TEST(CfgReader, Integers) {
    EXPECT_EQ(parse_text("9223372036854775807")->to_integer(), INT64_MAX);
    EXPECT_EQ(parse_text("-9223372036854775808 // least")->to_integer(), INT64_MIN);
    EXPECT_EQ(parse_text("[-0 007]")->to_array()[1].to_integer(), 7);
    for (const char* text : {"9223372036854775808", "-9223372036854775809", "99999999999999999999"})
        EXPECT_EQ(cfg_failure(text), "Line 1: Integer literal is too large.") << text;
    for (const char* text : {"x", "-", "[1\"a\"]", "[1[2]]", "1.5", "12a", "1/2", "{a:1b:2}", "[:]"})
        EXPECT_EQ(cfg_failure(text), "Line 1: Invalid integer literal.") << text;
}

TEST(CfgReader, ErrorsNameTheirLine) {
    for (const auto& [text, message] :
         Cases{{"{ a,b : 1 }", "Line 1: Invalid character in identifier."},
               {"{ a\rb : 1 }", "Line 1: Invalid character in identifier."},
               {"{ \xc3\xa4 : 1 }", "Line 1: Invalid character in identifier."},
               {"{ : 1 }", "Line 1: Expected identifier."},
               {"{ a b : 1 }", "Line 1: Expected colon after identifier."},
               {"{ a \"b\" : 1 }", "Line 1: Expected colon after identifier."},
               {"{ a : 1 a : 2 }", "Line 1: Duplicate key in object."},
               {"{ a : \"b\\n\" }", "Line 1: Invalid escape character: n"},
               {"// one\r\n{ a : \"two\nthree\"\n ] : 1}", "Line 4: Invalid character in identifier."},
               {"{ a\n : }", "Line 2: Unexpected '}'."},
               {"[1\n2\n}", "Line 3: Unexpected '}'."},
               {"\n]", "Line 2: Unexpected ']'."},
               {"{}\n}", "Line 2: Unexpected text behind the value."}})
        EXPECT_EQ(cfg_failure(text), message) << text;
}

TEST(CfgReader, EveryPrefixEndsTheStream) {
    const std::string text = "{ a : [1 \"b\\\"\" {}] c \n : {d:\"\"} }";
    for (std::size_t length = 0; length < text.size(); length++) {
        EXPECT_THROW(parse_text(text.substr(0, length)), EndOfStreamException) << length;
        EXPECT_EQ(cfg_failure(text.substr(0, length) + '\0' + "}"), "Unexpected end of stream.");
    }
    EXPECT_EQ(cfg_failure(text), "");
    EXPECT_EQ(cfg_failure(text + "// at the very end"), "");
}

TEST(CfgReader, DepthIsBounded) {
    const auto nested = [](unsigned depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_EQ(cfg_failure(nested(MAX_DEPTH)), "");
    EXPECT_EQ(cfg_failure(nested(MAX_DEPTH + 1)), "Line 1: Values are nested too deeply.");
    EXPECT_EQ(cfg_failure(std::string(10000000, '[')), "Line 1: Values are nested too deeply.");
    EXPECT_EQ(strict_failure(nested(MAX_DEPTH + 1)), "Line 1: Values are nested too deeply.");
}

TEST(StrictReader, WantsCommasAndQuotedKeys) {
    const ValuePtr value = parse_strict_text("{ \"a\" : 1, // one\n \"b\":[1,2 ,\"c\",[],{}],\"d\":{} }");
    const Object& object = value->to_object();
    EXPECT_EQ(object.get_integer("a"), 1);
    EXPECT_EQ(object.get_array("b").size(), 5u);
    EXPECT_EQ(object.get_object("d").size(), 0u);
    for (const auto& [text, message] :
         Cases{{"{ a : 1 }", "Line 1: Expected object key string."},
               {"{ \"a\" 1 }", "Line 1: Expected colon after object key string."},
               {"{ \"a\" : 1 \n \"b\" : 2 }", "Line 2: Expected ',' before object key string."},
               {"{ \"a\" : 1 b : 2 }", "Line 1: Expected ',' before identifier."},
               {"[1 2]", "Line 1: Expected ',' before identifier."},
               {"[,1]", "Line 1: Unexpected ','."},
               {"[1,,2]", "Line 1: Unexpected ','."},
               {"{,}", "Line 1: Unexpected ','."},
               {"{\"a\":1,}", "Line 1: Unexpected '}'."},
               {"[1,]", "Line 1: Unexpected ']'."},
               {"{\"a\":1,\"a\":1}", "Line 1: Duplicate key in object."},
               {"{\"a\":1", "Unexpected end of stream."}})
        EXPECT_EQ(strict_failure(text), message) << text;
}

TEST(ParseFile, Utf16ReadsLikeUtf8) {
    const TempFolder folder;
    const std::string path = folder / "x.cfg";
    std::string bytes = "\xFF\xFE";
    for (const char16_t c : u"{ name : \"\u00e4\u20ac\U0001F600\" // \u03c0\r\n }")
        bytes += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
    folder.write("x.cfg", bytes);
    EXPECT_EQ(parse_file(path)->to_object().get_string("name"), "\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
    folder.write("x.cfg", "\xEF\xBB\xBF{ \"a\" : 5 }");
    EXPECT_EQ(parse_file(path)->to_object().get_integer("a"), 5);
    EXPECT_EQ(parse_strict_file(path)->to_object().get_integer("a"), 5);

    const std::string replacement = "\xef\xbf\xbd";
    EXPECT_EQ(utf16le_to_utf8(std::string("\x00\xD8\x41\x00\x00\xDC\x42", 7)),
              replacement + "A" + replacement + replacement);
}

TEST(ParseFile, FilesThatCannotBeReadAreNamed) {
    const auto failure = [](const char* path) { return failure_of([&] { parse_file(path); }); };
    EXPECT_EQ(failure("/nonexistent/file.cfg"),
              "FileException parse_file(): Unable to open file. [/nonexistent/file.cfg]");
    EXPECT_EQ(failure("/tmp"), "FileException parse_file(): The path is a folder. [/tmp]");
    EXPECT_EQ(failure("/dev/zero"),
              "FileException parse_file(): The file is too large to be a configuration. [/dev/zero]");
}

}  // namespace
}  // namespace lumo::Config
