#pragma once

#include <bson/bson.h>

#include <locale.h>
#include <string>

namespace bson {

/// While this lives, numbers have a point in the texts of its thread, whatever the locale of the process:
/// libbson and the JSON parser ask the thread's locale.
class CClassicLocale {
public:
    CClassicLocale();
    ~CClassicLocale();
    CClassicLocale(const CClassicLocale&) = delete;
    CClassicLocale& operator=(const CClassicLocale&) = delete;

private:
    locale_t m_previous;
};

/// A document of libbson that is destroyed with its owner.
class CBsonDocument {
public:
    CBsonDocument() { bson_init(&m_document); }
    ~CBsonDocument() { bson_destroy(&m_document); }
    CBsonDocument(const CBsonDocument&) = delete;
    CBsonDocument& operator=(const CBsonDocument&) = delete;
    bson_t& get() { return m_document; }

private:
    bson_t m_document;
};

/// The values that JSON has no form for, such as a date or a number that is not finite. Their text is an
/// object with a "$" key; libbson writes and reads it.

/// The text of the value; empty if it holds bytes that are not UTF-8.
std::string extendedText(const bson_iter_t& value);

/// A copy of the document in which each object that is exactly the text of such a value has become that
/// value. Other objects with "$" keys stay objects. The document is nested no deeper than
/// BSONObj::kMaxDepth; the copy is empty before. False if the copy has no room.
bool readExtended(const bson_t& plain, bson_t& copy);

} // namespace bson
