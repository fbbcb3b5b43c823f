#include "desk/journal/FieldText.h"

#include "desk/journal/Json.h"
#include "orderservice/records/Enums.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <limits>
#include <string>

using namespace desk;

namespace {

template<typename T>
std::string textOf(const T& value) {
    CFieldText fields;
    fields.add("a", value);
    return fields.text();
}

/// The same by CJson.
std::string expected(const CJson& value) {
    return "\"a\":" + value.dump(-1, ' ', false, CJson::error_handler_t::replace);
}

} // namespace

TEST(FieldText, TextsAreThoseOfJson) {
    for (const std::string& text :
         {std::string(), std::string("SH600000"), std::string("a \"b\" \\ c/d"), std::string("停牌"),
          std::string("a\xff z"), std::string("a\n\t\x01\x1f\x7f"), std::string(1, '\0'), std::string("{["),
          std::string("\xf0\x9f\x98\x80"), std::string("\xed\xa0\x80")})
        EXPECT_EQ(textOf(text), expected(text));
}

TEST(FieldText, NumbersAreThoseOfJson) {
    for (const double number : {0.0,
                                -0.0,
                                1.0,
                                -1.0,
                                10.5,
                                0.1,
                                0.0001,
                                -0.0001,
                                0.00001,
                                0.00015,
                                11.0201,
                                123456789.1234,
                                999999999.9999,
                                1e9,
                                1e15,
                                1e16,
                                1e22,
                                1.0 / 3,
                                0.1 + 0.2,
                                -250000.25,
                                5e-324,
                                std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(textOf(number), expected(number)) << number;
    for (const std::int64_t number :
         {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(textOf(number), expected(number));
    EXPECT_EQ(textOf(-5), "\"a\":-5");
    EXPECT_EQ(textOf(true), "\"a\":true");
    EXPECT_EQ(textOf(false), "\"a\":false");
}

TEST(FieldText, NumberWithManyDigitsIsReadAsTheSameNumber) {
    for (const double number : {11.0 / 232, 178531562347.07812, 2.0 / 3, 1e-3 / 7})
        EXPECT_EQ(CJson::parse('{' + textOf(number) + '}')["a"], CJson(number)) << number;
}

TEST(FieldText, ValuesThatAreNotSetAreNull) {
    EXPECT_EQ(textOf(TC::kUnsetInt), "\"a\":null");
    EXPECT_EQ(textOf(TC::kUnsetDouble), "\"a\":null");
    EXPECT_EQ(textOf(TC::unsetEnum<TC::EPriceType>()), "\"a\":null");
    EXPECT_EQ(textOf(TC::EPriceType::Specified), "\"a\":11");
}

TEST(FieldText, KeysObjectsAndListsAreSeparatedByCommas) {
    CFieldText fields;
    fields.add("a", "{");
    fields.beginList("b");
    for (const int number : {1, 2}) {
        fields.beginObject(nullptr);
        fields.add("c", number);
        fields.addNull("d");
        fields.endObject();
    }
    fields.endList();
    fields.beginObject("e");
    fields.endObject();
    fields.beginList("f");
    fields.endList();
    fields.add("g", true);
    fields.add(std::string("a\"b"), 0.5);
    fields.add("h", CJson{{"x", nullptr}});
    EXPECT_EQ('{' + fields.text() + '}',
              R"({"a":"{","b":[{"c":1,"d":null},{"c":2,"d":null}],"e":{},"f":[],"g":true,)"
              R"("a\"b":0.5,"h":{"x":null}})");
}
