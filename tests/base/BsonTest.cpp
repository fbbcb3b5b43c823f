#include "base/Bson.h"

#include <gtest/gtest.h>

#include <bson/bson.h>

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
        {"string longer than the document", {14, 0, 0, 0, 2, 'a', 0, 99, 0, 0, 0, 'x', 0, 0}},
    };
    for (const CMalformedRow& row : rows) {
        EXPECT_THROW(bson::BSONObj{row.bytes}, std::invalid_argument) << row.meaning;
    }
}

} // namespace
