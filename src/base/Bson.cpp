#include "base/Bson.h"

#include <boost/make_shared.hpp>

#include <bson/bson.h>

#include <stdexcept>

namespace bson {
namespace {

// A document without elements is its length and the closing zero: five bytes.
constexpr std::size_t kEmptyDocumentSize = 5;

} // namespace

BSONObj::BSONObj(std::vector<std::uint8_t> bytes) {
    bson_t view;
    // libbson ends the process over fewer bytes than it can read a length from.
    if (bytes.size() < kEmptyDocumentSize || !bson_init_static(&view, bytes.data(), bytes.size()) ||
        !bson_validate(&view, BSON_VALIDATE_NONE, nullptr)) {
        throw std::invalid_argument("BSONObj: the bytes are not one BSON document");
    }
    if (bytes.size() > kEmptyDocumentSize) {
        m_pBytes = boost::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
    }
}

bool BSONObj::isEmpty() const {
    return m_pBytes == nullptr;
}

std::string BSONObj::jsonString() const {
    if (isEmpty()) return "{ }";
    bson_t view;
    bson_init_static(&view, m_pBytes->data(), m_pBytes->size());
    char* text = bson_as_relaxed_extended_json(&view, nullptr);
    std::string result(text != nullptr ? text : "{ }");
    bson_free(text);
    return result;
}

bool operator==(const BSONObj& a, const BSONObj& b) {
    if (a.m_pBytes == b.m_pBytes) return true;
    return a.m_pBytes && b.m_pBytes && *a.m_pBytes == *b.m_pBytes;
}

} // namespace bson
