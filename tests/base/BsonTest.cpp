#include "orderservice/base/Bson.h"

#include "tests/support/CommaLocale.h"

#include <gtest/gtest.h>

#include <bson/bson.h>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace {

using Bytes = std::vector<std::uint8_t>;

const Bytes kEmpty = {5, 0, 0, 0, 0};
/// {"a": 1}
const Bytes kOne = {12, 0, 0, 0, 0x10, 'a', 0, 1, 0, 0, 0, 0};

Bytes bytesOf(const bson_t& document) {
    const std::uint8_t* data = bson_get_data(&document);
    return {data, data + document.len};
}

TEST(Bson, DefaultIsTheEmptyDocument) {
    const bson::BSONObj object;
    EXPECT_TRUE(object.isEmpty());
    EXPECT_EQ(object.jsonString(), "{ }");
    EXPECT_EQ(object, bson::BSONObj(kEmpty));
    EXPECT_TRUE(bson::BSONObj(kEmpty).isEmpty());
}

TEST(Bson, BytesOfADocumentAreTaken) {
    const bson::BSONObj object(kOne);
    EXPECT_FALSE(object.isEmpty());
    EXPECT_EQ(object.jsonString(), "{ \"a\" : 1 }");
}

TEST(Bson, JsonKeepsTheOrderOfTheKeysAndUtf8) {
    bson_t document = BSON_INITIALIZER;
    bson_append_utf8(&document, "z", 1, "策略", -1);
    bson_append_double(&document, "price", 5, 10.5);
    bson_append_bool(&document, "a", 1, true);
    const bson::BSONObj object(bytesOf(document));
    bson_destroy(&document);
    EXPECT_EQ(object.jsonString(), "{ \"z\" : \"策略\", \"price\" : 10.5, \"a\" : true }");
}

TEST(Bson, KeysComeInTheirOrderAndAsOftenAsTheyStand) {
    EXPECT_EQ(bson::keysOf(bson::fromjson("{\"z\":1,\"a\":{\"b\":1},\"z\":2}")),
              (std::vector<std::string>{"z", "a", "z"}));
    EXPECT_EQ(bson::keysOf({}), std::vector<std::string>{});
}

TEST(Bson, TellsWhetherAllOfItsTextsAreUtf8) {
    const auto textOf = [](const char* key, const std::string& text) {
        return bson::BSONObjBuilder().append(key, text).obj();
    };
    EXPECT_TRUE(bson::BSONObj().isUtf8());
    EXPECT_TRUE(textOf("键", "值\x01").isUtf8());
    EXPECT_TRUE(bson::fromjson("{\"a\":{\"$date\":\"2026-01-05T09:30:00Z\"},\"b\":[1.5,null]}").isUtf8());
    EXPECT_FALSE(textOf("a", "\xD5\xCB").isUtf8());
    EXPECT_FALSE(textOf("a", "\xC1\x81").isUtf8()); // a longer form than the letter needs
    EXPECT_FALSE(bson::BSONObjBuilder().append("deep", textOf("a", "\xFF")).obj().isUtf8());
}

TEST(Bson, CopiesShareTheDocument) {
    const bson::BSONObj object(kOne);
    const bson::BSONObj copy = object;
    EXPECT_EQ(copy, object);
    EXPECT_EQ(copy.jsonString(), object.jsonString());
}

TEST(Bson, EqualMeansTheSameBytes) {
    Bytes two = kOne;
    two[7] = 2;
    EXPECT_EQ(bson::BSONObj(kOne), bson::BSONObj(kOne));
    EXPECT_NE(bson::BSONObj(kOne), bson::BSONObj(two));
    EXPECT_NE(bson::BSONObj(kOne), bson::BSONObj());
    EXPECT_NE(bson::BSONObj(), bson::BSONObj(kOne));
}

/// Empty documents, nested to this number of levels.
Bytes nested(int levels) {
    Bytes bytes = kEmpty;
    for (int level = 1; level < levels; ++level) {
        const std::uint8_t size = static_cast<std::uint8_t>((bytes.size() + 8) & 0xFF);
        Bytes outer = {size, static_cast<std::uint8_t>((bytes.size() + 8) >> 8), 0, 0, 3, 'a', 0};
        outer.insert(outer.end(), bytes.begin(), bytes.end());
        outer.push_back(0);
        bytes = outer;
    }
    return bytes;
}

TEST(Bson, DocumentsMayBeNestedToTheLimit) {
    const bson::BSONObj object(nested(bson::BSONObj::kMaxDepth));
    EXPECT_EQ(object.jsonString().substr(0, 14), "{ \"a\" : { \"a\" ");
}

TEST(Bson, BuilderNestsToTheLimitAndNoFurther) {
    bson::BSONObj inner;
    for (int level = 1; level < bson::BSONObj::kMaxDepth; ++level)
        inner = bson::BSONObjBuilder().append("a", inner).obj();
    EXPECT_EQ(inner, bson::BSONObj(nested(bson::BSONObj::kMaxDepth)));
    bson::BSONObjBuilder outer;
    outer.append("kept", 1);
    EXPECT_THROW(outer.append("a", inner), bson::CError);
    EXPECT_EQ(outer.obj().jsonString(), "{ \"kept\" : 1 }");
}

struct CMalformedRow {
    const char* meaning;
    Bytes bytes;
};

TEST(Bson, OtherBytesAreRefused) {
    const CMalformedRow rows[] = {
        {"nothing", {}},
        {"half a length", {5, 0}},
        {"no closing zero", {5, 0, 0, 0, 1}},
        {"length too short", {4, 0, 0, 0, 0}},
        {"length beyond the bytes", {6, 0, 0, 0, 0}},
        {"bytes behind the document", {5, 0, 0, 0, 0, 0}},
        {"negative length", {0xFF, 0xFF, 0xFF, 0xFF, 0}},
        {"unknown element type", {12, 0, 0, 0, 0x55, 'a', 0, 1, 0, 0, 0, 0}},
        {"element cut", {10, 0, 0, 0, 0x10, 'a', 0, 1, 0, 0}},
        {"nested too deep", nested(bson::BSONObj::kMaxDepth + 1)},
        {"string longer than the document", {14, 0, 0, 0, 2, 'a', 0, 99, 0, 0, 0, 'x', 0, 0}},
    };
    for (const CMalformedRow& row : rows) {
        EXPECT_THROW(bson::BSONObj{row.bytes}, std::invalid_argument) << row.meaning;
    }
}

std::string rewritten(const std::string& text) {
    return bson::fromjson(text).jsonString();
}

TEST(BsonText, KeysAndEntriesKeepTheirOrderOnOneLine) {
    EXPECT_EQ(rewritten("{\"b\":1,\n\"a\":[1,\"x\",{\"d\":null,\"c\":[]}],\"\":{}}\n"),
              R"({ "b" : 1, "a" : [ 1, "x", { "d" : null, "c" : [ ] } ], "" : { } })");
    EXPECT_EQ(rewritten("{}"), "{ }");
}

TEST(BsonText, StringsAreEscapedAndUtf8IsKept) {
    const std::string text = R"({ "k\"\\" : "策略 😀 /\"\\\b\f\n\r\t\u0001\u001f\u0000z" })";
    EXPECT_EQ(rewritten(text), text);
    EXPECT_EQ(rewritten(R"({"a":"\u7b56\ud83d\ude00\/"})"), "{ \"a\" : \"策😀/\" }");
}

TEST(BsonText, BytesThatAreNotUtf8BecomeTheReplacementCharacter) {
    const bson::BSONObj object = bson::BSONObjBuilder().append("a", "x\xD6y").obj();
    EXPECT_EQ(object.jsonString(), "{ \"a\" : \"x\xEF\xBF\xBDy\" }");
}

struct CDoubleText {
    double value;
    const char* text;
};

TEST(BsonText, DoublesHaveTheShortestTextThatReadsBackEqual) {
    const CDoubleText rows[] = {
        {0, "0"},
        {-0.0, "0"},
        {5, "5"},
        {-100000, "-100000"},
        {5e9, "5000000000"},
        {9999999999999998, "9999999999999998"},
        {1e16, "1e+16"},
        {886400868640086864002.0, "8.864008686400868e+20"},
        {-9223372036854775808.0, "-9.223372036854776e+18"},
        {0.1, "0.1"},
        {0.1 + 0.2, "0.30000000000000004"},
        {-12345.6789, "-12345.6789"},
        {1e-7, "1e-07"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {std::numeric_limits<double>::denorm_min(), "5e-324"},
    };
    for (const CDoubleText& row : rows) {
        const std::string text = bson::BSONObjBuilder().append("d", row.value).obj().jsonString();
        EXPECT_EQ(text, std::string("{ \"d\" : ") + row.text + " }");
        EXPECT_EQ(rewritten(text), text);
    }
}

TEST(BsonText, ADoubleWithAFractionIsReadBackEqual) {
    for (const double value : {0.1 + 0.2, 1e16, 1e-300, 4.9e-324}) {
        double read = 0;
        const bson::BSONObj written = bson::BSONObjBuilder().append("d", value).obj();
        ASSERT_TRUE(bson::readField(bson::fromjson(written.jsonString()), "d", read));
        EXPECT_EQ(read, value);
    }
}

TEST(BsonText, WhatJsonHasNoFormForIsReadBack) {
    bson_t document = BSON_INITIALIZER;
    bson_append_double(&document, "nan", -1, std::nan(""));
    bson_append_double(&document, "inf", -1, -std::numeric_limits<double>::infinity());
    bson_append_date_time(&document, "date", -1, 1767571200000);
    const bson::BSONObj object(bytesOf(document));
    bson_destroy(&document);
    EXPECT_EQ(object.jsonString(), R"({ "nan" : { "$numberDouble" : "NaN" }, "inf" : { "$numberDouble" : )"
                                   R"("-Infinity" }, "date" : { "$date" : "2026-01-05T00:00:00Z" } })");
    EXPECT_EQ(rewritten(object.jsonString()), object.jsonString());
}

TEST(BsonBuilder, EachKindIsAppendedInOrder) {
    bson::BSONObjBuilder builder;
    builder.append("s", std::string("x\0y", 3)).append("c", "text").append("i", -7);
    builder.append("l", std::int64_t{5000000000}).append("t", true).append("d", 1.5);
    builder.append("list", std::vector<std::string>{"b", "a"}).append("o", bson::fromjson("{\"k\":1}"));
    builder.append("none", std::vector<std::string>()).append("e", bson::BSONObj());
    EXPECT_EQ(builder.obj().jsonString(),
              R"({ "s" : "x\u0000y", "c" : "text", "i" : -7, "l" : 5000000000, "t" : true, "d" : 1.5, )"
              R"("list" : [ "b", "a" ], "o" : { "k" : 1 }, "none" : [ ], "e" : { } })");
    EXPECT_TRUE(bson::BSONObjBuilder().obj().isEmpty());
}

const char* const kFields =
    R"({"i":7,"l":5000000000,"s":"x","t":true,"d":1.5,"a":["p","q"],"n":null,"m":["p",1]})";

template<typename Value>
void expectRead(const char* key, const Value& expected) {
    Value value{};
    EXPECT_TRUE(bson::readField(bson::fromjson(kFields), key, value));
    EXPECT_EQ(value, expected);
}

TEST(BsonFields, EachKindIsReadFromItsOwnType) {
    expectRead<std::int32_t>("i", 7);
    expectRead<std::int64_t>("l", 5000000000);
    expectRead<std::string>("s", "x");
    expectRead<bool>("t", true);
    expectRead<double>("d", 1.5);
    expectRead<std::vector<std::string>>("a", {"p", "q"});
}

template<typename Value>
void expectAbsent(const Value& before) {
    Value value = before;
    EXPECT_FALSE(bson::readField(bson::fromjson(kFields), "x", value));
    EXPECT_FALSE(bson::readField(bson::BSONObj(), "i", value));
    EXPECT_EQ(value, before);
}

TEST(BsonFields, AnAbsentKeyLeavesTheValue) {
    expectAbsent<std::int32_t>(4);
    expectAbsent<std::int64_t>(4);
    expectAbsent<std::string>("SH000300");
    expectAbsent<bool>(true);
    expectAbsent<double>(0.5);
    expectAbsent<std::vector<std::string>>({"before"});
}

std::int32_t numberOf(const char* value) {
    std::int32_t number = 4;
    bson::readNumber(bson::fromjson(std::string("{\"n\":") + value + "}"), "n", number);
    return number;
}

TEST(BsonFields, ANumberIsReadWhateverItsType) {
    EXPECT_EQ(numberOf("7"), 7);
    EXPECT_EQ(numberOf("-2.9"), -2);
    EXPECT_EQ(numberOf("9e0"), 9);
    std::int32_t number = 4;
    EXPECT_TRUE(bson::readNumber(bson::BSONObjBuilder().append("n", std::int64_t{9}).obj(), "n", number));
    EXPECT_EQ(number, 9);
    EXPECT_FALSE(bson::readNumber(bson::BSONObj(), "n", number));
    EXPECT_EQ(number, 9);
}

TEST(BsonFields, WhatIsNoSmallNumberIsNoNumber) {
    for (const char* value : {"\"9\"", "true", "null", "2147483648", "-2147483649", "1e300"})
        EXPECT_EQ(numberOf(value), 4) << value;
    const auto document = bson::BSONObjBuilder().append("n", std::nan("")).obj();
    std::int32_t number = 4;
    EXPECT_FALSE(bson::readNumber(document, "n", number));
    EXPECT_EQ(number, 4);
}

template<typename Value>
void expectRefused(const char* key, const Value& before, const char* message) {
    Value value = before;
    try {
        bson::readField(bson::fromjson(kFields), key, value);
        ADD_FAILURE() << message;
    } catch (const bson::CTypeError& error) {
        EXPECT_STREQ(error.what(), message);
    }
    EXPECT_EQ(value, before) << message;
}

TEST(BsonFields, AnotherTypeIsRefusedByKeyAndTypes) {
    expectRefused<std::int32_t>("l", 4, "wrong type for field (l) 18 != 16");
    expectRefused<std::int32_t>("d", 4, "wrong type for field (d) 1 != 16");
    expectRefused<std::int32_t>("n", 4, "wrong type for field (n) 10 != 16");
    expectRefused<std::int64_t>("i", 4, "wrong type for field (i) 16 != 18");
    expectRefused<std::string>("i", "before", "wrong type for field (i) 16 != 2");
    expectRefused<bool>("i", true, "wrong type for field (i) 16 != 8");
    expectRefused<double>("i", 0.5, "wrong type for field (i) 16 != 1");
    expectRefused<std::vector<std::string>>("s", {"before"}, "wrong type for field (s) 2 != 4");
    expectRefused<std::vector<std::string>>("m", {"before"}, "wrong type for field (1) 16 != 2");
}

TEST(BsonFields, TheFirstOfTwoEqualKeysCounts) {
    int value = 0;
    ASSERT_TRUE(bson::readField(bson::fromjson("{\"a\":1,\"a\":2}"), "a", value));
    EXPECT_EQ(value, 1);
}

TEST(Bson, NumbersHaveAPointWhateverTheLocale) {
    const CCommaLocale comma;
    const bson::BSONObj object = bson::fromjson("{\"a\":10.5,\"b\":-1.25e-3,\"c\":1234567}");
    double number = 0;
    ASSERT_TRUE(bson::readField(object, "a", number));
    EXPECT_EQ(number, 10.5);
    ASSERT_TRUE(bson::readField(object, "b", number));
    EXPECT_EQ(number, -1.25e-3);
    EXPECT_EQ(object.jsonString(), "{ \"a\" : 10.5, \"b\" : -0.00125, \"c\" : 1234567 }");
    EXPECT_THROW(bson::fromjson("{\"a\":10,5}"), bson::CJsonError);
}

} // namespace
