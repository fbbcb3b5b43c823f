#include "orderservice/base/Bson.h"

#include "orderservice/base/BsonExtended.h"
#include "orderservice/base/BsonText.h"

#include <boost/make_shared.hpp>

#include <bson/bson.h>

#include <cmath>
#include <limits>
#include <string_view>

namespace bson {
namespace {

using CBytes = std::vector<std::uint8_t>;

// A document without elements has five bytes: its length and the closing zero.
constexpr std::size_t kEmptyDocumentSize = 5;

/// Whether documents are nested more than `levels` deep. This is checked before libbson walks a document,
/// because libbson recurses without a limit.
bool isDeeperThan(int levels, const std::uint8_t* bytes, std::size_t size) {
    bson_iter_t iter;
    if (!bson_iter_init_from_data(&iter, bytes, size)) return false;
    while (bson_iter_next(&iter)) {
        const std::uint8_t* child = nullptr;
        std::uint32_t childSize = 0;
        if (BSON_ITER_HOLDS_DOCUMENT(&iter)) {
            bson_iter_document(&iter, &childSize, &child);
        } else if (BSON_ITER_HOLDS_ARRAY(&iter)) {
            bson_iter_array(&iter, &childSize, &child);
        } else if (BSON_ITER_HOLDS_CODEWSCOPE(&iter)) {
            std::uint32_t codeSize = 0;
            bson_iter_codewscope(&iter, &codeSize, &childSize, &child);
        }
        if (child != nullptr && (levels <= 1 || isDeeperThan(levels - 1, child, childSize))) return true;
    }
    return false;
}

bool isDocument(const CBytes& bytes) {
    bson_t view;
    // libbson aborts the process if there are too few bytes for the length field.
    return bytes.size() >= kEmptyDocumentSize &&
           !isDeeperThan(BSONObj::kMaxDepth, bytes.data(), bytes.size()) &&
           bson_init_static(&view, bytes.data(), bytes.size()) &&
           bson_validate(&view, BSON_VALIDATE_NONE, nullptr);
}

/// Finds the key. Returns false if it is absent and throws CTypeError if the field has another type.
bool find(const BSONObj& object, const char* key, EType wanted, bson_iter_t& iter) {
    if (!bson_iter_init_from_data(&iter, object.bytes().data(), object.bytes().size())) return false;
    if (!bson_iter_find(&iter, key)) return false;
    const auto found = static_cast<int>(bson_iter_type(&iter));
    if (found != static_cast<int>(wanted)) throw CTypeError(key, found, wanted);
    return true;
}

std::string textOf(const bson_iter_t& iter) {
    std::uint32_t size = 0;
    const char* text = bson_iter_utf8(&iter, &size);
    return {text, size};
}

} // namespace

CTypeError::CTypeError(const std::string& key, int found, EType wanted)
    : CError("wrong type for field (" + key + ") " + std::to_string(found) +
             " != " + std::to_string(static_cast<int>(wanted))),
      m_strKey(key), m_eWanted(wanted) {}

BSONObj::BSONObj(CBytes bytes) {
    if (!isDocument(bytes)) throw std::invalid_argument("BSONObj: the bytes are not one BSON document");
    if (bytes.size() > kEmptyDocumentSize) {
        m_pBytes = boost::make_shared<const CBytes>(std::move(bytes));
    }
}

bool BSONObj::isEmpty() const {
    return m_pBytes == nullptr;
}

const CBytes& BSONObj::bytes() const {
    static const CBytes empty = {kEmptyDocumentSize, 0, 0, 0, 0};
    return m_pBytes != nullptr ? *m_pBytes : empty;
}

std::string BSONObj::jsonString() const {
    return jsonText(*this).text;
}

bool BSONObj::isUtf8() const {
    return !jsonText(*this).isRepaired;
}

bool operator==(const BSONObj& a, const BSONObj& b) {
    return a.m_pBytes == b.m_pBytes || a.bytes() == b.bytes();
}

struct BSONObjBuilder::CDocument : CBsonDocument {};

namespace {

void expect(bool appended, const char* key) {
    if (!appended) throw CError(std::string("the document has no room for field (") + key + ")");
}

bool appendText(bson_t& document, const char* key, const std::string& text) {
    return text.size() < std::numeric_limits<std::int32_t>::max() &&
           bson_append_utf8(&document, key, -1, text.data(), static_cast<int>(text.size()));
}

} // namespace

BSONObjBuilder::BSONObjBuilder() : m_pDocument(std::make_unique<CDocument>()) {}
BSONObjBuilder::~BSONObjBuilder() = default;

BSONObjBuilder& BSONObjBuilder::append(const char* key, const std::string& value) {
    expect(appendText(m_pDocument->get(), key, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, const char* value) {
    return append(key, std::string(value));
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, std::int32_t value) {
    expect(bson_append_int32(&m_pDocument->get(), key, -1, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, std::int64_t value) {
    expect(bson_append_int64(&m_pDocument->get(), key, -1, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, bool value) {
    expect(bson_append_bool(&m_pDocument->get(), key, -1, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, double value) {
    expect(bson_append_double(&m_pDocument->get(), key, -1, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, const std::vector<std::string>& values) {
    CBsonDocument array;
    std::size_t place = 0;
    for (const std::string& value : values) {
        expect(appendText(array.get(), std::to_string(place++).c_str(), value), key);
    }
    expect(bson_append_array(&m_pDocument->get(), key, -1, &array.get()), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, const BSONObj& value) {
    // The value is one level deeper than the document.
    if (isDeeperThan(BSONObj::kMaxDepth - 1, value.bytes().data(), value.bytes().size()))
        throw CError(std::string("field (") + key + ") would be nested too deep");
    bson_t view;
    bson_init_static(&view, value.bytes().data(), value.bytes().size());
    expect(bson_append_document(&m_pDocument->get(), key, -1, &view), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::appendAllBut(const char* key, const BSONObj& document) {
    bson_t view;
    bson_init_static(&view, document.bytes().data(), document.bytes().size());
    bson_iter_t iter;
    for (bson_iter_init(&iter, &view); bson_iter_next(&iter);) {
        if (std::string_view(bson_iter_key(&iter)) == key) continue;
        expect(bson_append_iter(&m_pDocument->get(), nullptr, -1, &iter), bson_iter_key(&iter));
    }
    return *this;
}

BSONObj BSONObjBuilder::obj() const {
    const std::uint8_t* bytes = bson_get_data(&m_pDocument->get());
    return BSONObj(CBytes(bytes, bytes + m_pDocument->get().len));
}

std::vector<std::string> keysOf(const BSONObj& object) {
    std::vector<std::string> keys;
    bson_iter_t iter;
    if (!bson_iter_init_from_data(&iter, object.bytes().data(), object.bytes().size())) return keys;
    while (bson_iter_next(&iter))
        keys.emplace_back(bson_iter_key(&iter));
    return keys;
}

bool readField(const BSONObj& object, const char* key, std::string& value) {
    bson_iter_t iter;
    if (!find(object, key, EType::String, iter)) return false;
    value = textOf(iter);
    return true;
}

bool readField(const BSONObj& object, const char* key, std::int32_t& value) {
    bson_iter_t iter;
    if (!find(object, key, EType::Int32, iter)) return false;
    value = bson_iter_int32(&iter);
    return true;
}

bool readField(const BSONObj& object, const char* key, std::int64_t& value) {
    bson_iter_t iter;
    if (!find(object, key, EType::Int64, iter)) return false;
    value = bson_iter_int64(&iter);
    return true;
}

bool readField(const BSONObj& object, const char* key, bool& value) {
    bson_iter_t iter;
    if (!find(object, key, EType::Bool, iter)) return false;
    value = bson_iter_bool(&iter);
    return true;
}

bool readField(const BSONObj& object, const char* key, double& value) {
    bson_iter_t iter;
    if (!find(object, key, EType::Double, iter)) return false;
    value = bson_iter_double(&iter);
    return true;
}

bool readField(const BSONObj& object, const char* key, std::vector<std::string>& values) {
    bson_iter_t iter;
    if (!find(object, key, EType::Array, iter)) return false;
    std::vector<std::string> found;
    bson_iter_t entry;
    bson_iter_recurse(&iter, &entry);
    while (bson_iter_next(&entry)) {
        if (!BSON_ITER_HOLDS_UTF8(&entry)) {
            throw CTypeError(bson_iter_key(&entry), static_cast<int>(bson_iter_type(&entry)), EType::String);
        }
        found.push_back(textOf(entry));
    }
    values = std::move(found);
    return true;
}

bool readNumber(const BSONObj& object, const char* key, std::int32_t& value) {
    bson_iter_t iter;
    if (!bson_iter_init_from_data(&iter, object.bytes().data(), object.bytes().size())) return false;
    if (!bson_iter_find(&iter, key)) return false;
    if (!BSON_ITER_HOLDS_NUMBER(&iter)) return false;
    const double number = std::trunc(bson_iter_as_double(&iter));
    constexpr double kLeast = std::numeric_limits<std::int32_t>::min();
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    if (!(number >= kLeast && number <= kMost)) return false;
    value = static_cast<std::int32_t>(number);
    return true;
}

} // namespace bson
