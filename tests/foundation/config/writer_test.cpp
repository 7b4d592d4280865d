#include "lumo/foundation/config/writer.h"

#include <gtest/gtest.h>

#include <random>

#include "lumo/foundation/config/reader.h"
#include "lumo/foundation/errors/exceptions.h"

namespace lumo::Config {
namespace {

bool equal(const Value& a, const Value& b) {
    if (a.kind() != b.kind()) return false;
    if (a.kind() == Kind::INTEGER) return a.to_integer() == b.to_integer();
    if (a.kind() == Kind::STRING) return a.to_string() == b.to_string();
    if (a.kind() == Kind::ARRAY) {
        const Array &x = a.to_array(), &y = b.to_array();
        bool same = x.size() == y.size();
        for (std::size_t i = 0; same && i < x.size(); i++) same = equal(x[i], y[i]);
        return same;
    }
    const auto &x = a.to_object().entries(), &y = b.to_object().entries();
    return std::equal(x.begin(), x.end(), y.begin(), y.end(), [](const auto& p, const auto& q) {
        return p.key == q.key && equal(*p.value, *q.value);
    });
}

/// Trees of values with every character that the syntaxes treat specially.
class RandomTree {
 public:
    explicit RandomTree(unsigned seed) : random(seed) {}

    ValuePtr value(unsigned depth) {
        switch (random() % (depth == 0 ? 2 : 4)) {
            case 0:
                return std::make_unique<Integer>(integer());
            case 1:
                return std::make_unique<String>(text());
            case 2: {
                auto array = std::make_unique<Array>();
                for (auto n = random() % 20; n > 0; n--) array->add_node(value(depth - 1));
                return array;
            }
            default: {
                auto object = std::make_unique<Object>();
                for (auto n = random() % 6; n > 0; n--) {
                    const std::string key = text();
                    if (object->find(key) == nullptr) object->add_node(key, value(depth - 1), text());
                }
                return object;
            }
        }
    }

 private:
    std::int64_t integer() {
        static constexpr std::int64_t EDGES[] = {0, -1, INT64_MAX, INT64_MIN};
        return random() % 2 ? EDGES[random() % 4] : static_cast<std::int64_t>(random() >> (random() % 64));
    }

    std::string text() {
        static constexpr std::string_view ALPHABET = "aB9-./\\\"{}[]:, \t\r\n\xc3\xa4#";
        std::string result;
        for (auto n = random() % 7; n > 0; n--) result += ALPHABET[random() % ALPHABET.size()];
        return result;
    }

    std::mt19937_64 random;
};

TEST(Writer, WhatIsWrittenReadsBack) {
    for (unsigned seed = 0; seed < 400; seed++) {
        const ValuePtr value = RandomTree(seed).value(4);
        const std::string cfg = write_cfg(*value), strict = write_strict(*value);
        ASSERT_TRUE(equal(*parse_text(cfg), *value)) << "seed " << seed << "\n" << cfg;
        ASSERT_TRUE(equal(*parse_strict_text(strict), *value)) << "seed " << seed << "\n" << strict;
    }
}

TEST(Writer, LayoutOfCfg) {
    Object root;
    root.add_string("Action", "CustomCompute");
    Object& inner = root.add_object("Constant", "what to compute");
    inner.add_integer("Digits", 100, "at least 100");
    inner.add_string("Key with blank", "a\"b", "two\r\nlines");
    inner.add_array("Empty");
    root.add_object("Nothing");
    Array& list = root.add_array("List");
    list.add_integer(1);
    list.add_string("two");
    EXPECT_EQ(write_cfg(root),
              "{\r\n"
              "    Action : \"CustomCompute\"\r\n"
              "    Constant : {\r\n"
              "        Digits : 100   //  at least 100\r\n"
              "        //  two\r\n"
              "        //  lines\r\n"
              "        \"Key with blank\" : \"a\\\"b\"\r\n"
              "        Empty : []\r\n"
              "    }   //  what to compute\r\n"
              "    Nothing : {}\r\n"
              "    List : [1 \"two\"]\r\n"
              "}\r\n");
}

TEST(Writer, LayoutOfStrict) {
    Object root;
    root.add_object("A");
    Object& inner = root.add_array("B").add_object();
    inner.add_integer("C", 1, "left out");
    inner.add_integer("D", -2);
    root.add_object("E");
    EXPECT_EQ(write_strict(root),
              "{\r\n"
              "    \"A\": {},\r\n"
              "    \"B\": [\r\n"
              "        {\r\n"
              "            \"C\": 1,\r\n"
              "            \"D\": -2\r\n"
              "        }\r\n"
              "    ],\r\n"
              "    \"E\": {}\r\n"
              "}\r\n");
    EXPECT_THROW(write_cfg(String(std::string("a\0b", 3))), InvalidParametersException);
}

}  // namespace
}  // namespace lumo::Config
