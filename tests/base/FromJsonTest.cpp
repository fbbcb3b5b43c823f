// The texts that fromjson reads, and the texts that it refuses.
#include "orderservice/base/Bson.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

/// The number of the type that fromjson gives the value.
int typeOf(const std::string& value) {
    bson::BSONObj object = bson::fromjson("{\"k\":" + value + "}");
    return object.bytes().at(4);
}

TEST(FromJson, IntegersAreAsNarrowAsTheyFit) {
    for (const char* text : {"0", "-0", "2147483647", "-2147483648"})
        EXPECT_EQ(typeOf(text), 16) << text;
    for (const char* text : {"2147483648", "-2147483649", "9223372036854775807", "-9223372036854775808"})
        EXPECT_EQ(typeOf(text), 18) << text;
    for (const char* text : {"1.0", "1.5", "1e3", "1E-3", "-0.0"})
        EXPECT_EQ(typeOf(text), 1) << text;
    EXPECT_EQ(typeOf("\"1\""), 2);
    EXPECT_EQ(typeOf("{}"), 3);
    EXPECT_EQ(typeOf("[]"), 4);
    EXPECT_EQ(typeOf("false"), 8);
    EXPECT_EQ(typeOf("null"), 10);
}

struct CBadJsonRow {
    std::string text;
    const char* message;
};

TEST(FromJson, OtherTextsAreRefusedWithTheReason) {
    const CBadJsonRow rows[] = {
        {"", "the text is empty; expected a JSON object"},
        {" \n\t", "the text is empty; expected a JSON object"},
        {"[1,2]", "the text does not begin with {; expected a JSON object"},
        {"1", "the text does not begin with {; expected a JSON object"},
        {"null}", "the text does not begin with {; expected a JSON object"},
        {"{}x", "the text is not a JSON object: line 1, column 3: syntax error while parsing value - invalid "
                "literal; last read: '{}x'; expected end of input"},
        {"{\"a\":1} ,", "the text is not a JSON object: line 1, column 9: syntax error while parsing value - "
                        "unexpected ','; expected end of input"},
        {"{", "the text is not a JSON object: Incomplete JSON"},
        {"{} , {}", "the text is not a JSON object: line 1, column 4: syntax error while parsing value - "
                    "unexpected ','; expected end of input"},
        {"{}{}", "the text is not a JSON object: line 1, column 3: syntax error while parsing value - "
                 "unexpected '{'; expected end of input"},
        {"\xEF\xBB\xBF{}", "the text does not begin with {; expected a JSON object"},
        {std::string("{}\0", 3), "the text has a NUL byte"},
        {"{\"a\":{}", "the text is not a JSON object: Incomplete JSON"},
        {"{\"a\":\"\xD6\xD0\"}", "the text is not UTF-8"},
        {"{\"a\":\"\xC0\x80\"}", "the text is not UTF-8"},
    };
    for (const CBadJsonRow& row : rows) {
        try {
            bson::fromjson(row.text);
            ADD_FAILURE() << row.text << " was read";
        } catch (const bson::CJsonError& error) {
            EXPECT_STREQ(error.what(), row.message) << row.text;
        }
    }
}

TEST(FromJson, WhatADocumentCannotHoldIsRefused) {
    const CBadJsonRow rows[] = {
        {"{\"a\":9223372036854775808}", "a document cannot hold the number 9223372036854775808"},
        {"{\"a\":18446744073709551616}", "a document cannot hold the number 18446744073709551616"},
        {"{\"a\":-427475187718893990222}", "a document cannot hold the number -427475187718893990222"},
        {"{\"a\":1e999}", "a document cannot hold the number 1e999"},
        {"{\"a\":[-1.5e400]}", "a document cannot hold the number -1.5e400"},
        {"{\"a\\u0000b\":1}", "a document cannot hold a key with a NUL character"},
        {"{\"o\":{\"\\u0000\":1}}", "a document cannot hold a key with a NUL character"},
    };
    for (const CBadJsonRow& row : rows) {
        try {
            bson::fromjson(row.text);
            ADD_FAILURE() << row.text << " was read";
        } catch (const bson::CError& error) {
            EXPECT_STREQ(error.what(), row.message) << row.text;
        }
    }
    EXPECT_THROW(bson::fromjson(R"({"a":"\ud83d"})"), bson::CJsonError);
    EXPECT_THROW(bson::fromjson(R"({"a":"\udc00"})"), bson::CJsonError);
    EXPECT_THROW(bson::fromjson(R"({"\ud83dx":1})"), bson::CJsonError);
}

TEST(FromJson, NumbersAreThoseOfTheGrammarOnly) {
    const char* const numbers[] = {
        "-05",  "-012", "-00",  "00",       "012",       "0x10", "+1",    "--1", "-",    "-a",    "1e2.5",
        "1e.5", "1.e1", "1.",   ".5",       "-.5",       "1e",   "1e+",   "1E-", "1.5e", "1.5.5", "1e5e5",
        "NaN",  "nan",  "-NaN", "Infinity", "-Infinity", "inf",  "1_000", "1d",  "1f",   "0b1",   "1e1.",
    };
    for (const char* number : numbers) {
        for (const char* form : {"{\"a\":%}", "{\"a\":[%]}", "{\"a\":%,\"b\":1}", "{\"a\": % }"}) {
            std::string text = form;
            text.replace(text.find('%'), 1, number);
            EXPECT_THROW(bson::fromjson(text), bson::CJsonError) << text;
        }
    }
}

TEST(FromJson, WordsAreWhole) {
    for (const char* word : {"n", "N", "na", "nu", "nul", "nulls", "Null", "NULL", "t", "tru", "True",
                             "truee", "f", "fals", "False", "undefined", "None", "nil"}) {
        EXPECT_THROW(bson::fromjson(std::string("{\"a\":") + word + "}"), bson::CJsonError) << word;
        EXPECT_THROW(bson::fromjson(std::string("{\"a\":[1,") + word + "]}"), bson::CJsonError) << word;
    }
}

TEST(FromJson, ControlBytesStandInTextsAsEscapesOnly) {
    for (int byte = 0; byte < 0x20; ++byte) {
        const std::string raw(1, static_cast<char>(byte));
        EXPECT_THROW(bson::fromjson("{\"a\":\"x" + raw + "y\"}"), bson::CJsonError) << byte;
        EXPECT_THROW(bson::fromjson("{\"x" + raw + "y\":1}"), bson::CJsonError) << byte;
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(byte));
        std::string value;
        ASSERT_TRUE(
            bson::readField(bson::fromjson(std::string("{\"a\":\"x") + escaped + "y\"}"), "a", value));
        EXPECT_EQ(value, "x" + raw + "y") << byte;
    }
    EXPECT_NO_THROW(bson::fromjson("{\"a\":\"\x7f\"}"));
}

TEST(FromJson, BlanksAreFourBytes) {
    EXPECT_EQ(bson::fromjson(" \t\r\n{ \t\r\n\"a\" \t\r\n: \t\r\n[ \t\r\n] \t\r\n} \t\r\n").jsonString(),
              "{ \"a\" : [ ] }");
    for (const char* blank : {"\v", "\f", "\x1f", "\xC2\xA0", "\xE3\x80\x80", "\xE2\x80\xA8"})
        EXPECT_THROW(bson::fromjson(std::string("{\"a\":") + blank + "1}"), bson::CJsonError);
}

TEST(FromJson, ANumberTooSmallForADoubleIsZero) {
    double value = 1;
    ASSERT_TRUE(bson::readField(bson::fromjson("{\"a\":1e-999}"), "a", value));
    EXPECT_EQ(value, 0);
    ASSERT_TRUE(bson::readField(bson::fromjson("{\"a\":0e928}"), "a", value));
    EXPECT_EQ(value, 0);
}

TEST(FromJson, DollarKeysThatNoValueIsWrittenWithStayObjects) {
    for (const char* text : {R"({ "a" : { "$numberInt" : "5" } })", R"({ "a" : { "$numberLong" : "05" } })",
                             R"({ "a" : { "$numberDouble" : "1.5" } })", R"({ "a" : { "$date" : 5 } })",
                             R"({ "a" : { "$oid" : "x" } })", R"({ "a" : { "$none" : 1 } })",
                             R"({ "a" : { "$numberDouble" : "NaN", "b" : 1 } })", R"({ "$date" : 1 })"}) {
        EXPECT_EQ(bson::fromjson(text).jsonString(), text);
    }
    std::int32_t number = 4;
    EXPECT_THROW(bson::readField(bson::fromjson(R"({"a":{"$numberInt":"5"}})"), "a", number),
                 bson::CTypeError);
}

TEST(FromJson, MessagesStayShort) {
    try {
        bson::fromjson("{\"a\":\"" + std::string(100000, 'x') + "\\q\"}");
        ADD_FAILURE();
    } catch (const bson::CJsonError& error) {
        EXPECT_LT(std::string(error.what()).size(), 400u);
    }
}

TEST(FromJson, IntegersOfAnyLengthAboveSixtyFourBitsAreRefused) {
    std::string digits = "9223372036854775808";
    for (int length = 19; length < 60; ++length, digits += "2") {
        EXPECT_THROW(bson::fromjson("{\"a\":" + digits + "}"), bson::CJsonError) << digits;
        EXPECT_THROW(bson::fromjson("{\"a\":[1,-1" + digits + "]}"), bson::CJsonError) << digits;
        EXPECT_NO_THROW(bson::fromjson("{\"a" + digits + "\":\"\\\"" + digits + "\"}")) << digits;
        EXPECT_EQ(typeOf(digits + ".0"), 1);
    }
}

TEST(FromJson, LooseWritingIsRefused) {
    const std::string texts[] = {
        "{a:1}",         "{'a':1}",          "{\"a\":1,}",        "{\"a\":[1,]}",
        "{\"a\":01}",    "{\"a\":+1}",       "{\"a\":.5}",        "{\"a\":1.}",
        "{\"a\":tru}",   "{\"a\" 1}",        "{\"a\":1 \"b\":2}", "{\"a\":\"\n\"}",
        "{\"a\":/**/1}", "{\"a\":\"\\x\"}",  "{\"a\":-}",         "{\"a\":\"\\ud83d\"}",
        "{}}",           "{\"a\\u0000\":1}", "{} , {}",           std::string("{\"a\":1}\0}", 9),
    };
    for (const std::string& text : texts)
        EXPECT_THROW(bson::fromjson(text), bson::CJsonError) << text;
}

TEST(FromJson, DepthHasALimit) {
    const auto nestedText = [](int levels, const std::string& open, const std::string& close) {
        std::string text = "{\"a\":";
        for (int i = 1; i < levels; ++i)
            text += open;
        text += "1";
        for (int i = 1; i < levels; ++i)
            text += close;
        return text + "}";
    };
    EXPECT_NO_THROW(bson::fromjson(nestedText(bson::BSONObj::kMaxDepth, "{\"a\":", "}")));
    EXPECT_NO_THROW(bson::fromjson(nestedText(bson::BSONObj::kMaxDepth, "[", "]")));
    EXPECT_NO_THROW(bson::fromjson(nestedText(bson::BSONObj::kMaxDepth, "{\"$a\":", "}")));
    for (const int levels : {bson::BSONObj::kMaxDepth + 1, 1000000}) {
        EXPECT_THROW(bson::fromjson(nestedText(levels, "{\"a\":", "}")), bson::CJsonError);
        EXPECT_THROW(bson::fromjson(nestedText(levels, "[", "]")), bson::CJsonError);
        EXPECT_THROW(bson::fromjson(nestedText(levels, "[", "")), bson::CJsonError);
    }
}

} // namespace
