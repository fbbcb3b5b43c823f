#pragma once

#include <bson/bson.h>

#include <locale.h>
#include <string>

namespace bson {

/// Sets the "C" locale for the calling thread during its lifetime. libbson and the JSON parser use the
/// thread's locale for numbers; in some locales the decimal separator is not a point.
class CClassicLocale {
public:
    CClassicLocale();
    ~CClassicLocale();
    CClassicLocale(const CClassicLocale&) = delete;
    CClassicLocale& operator=(const CClassicLocale&) = delete;

private:
    locale_t m_previous;
};

/// Owns a libbson document and destroys it in the destructor.
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

/// The functions below are for values that JSON cannot express, such as a date or a number that is not
/// finite. The text of such a value is an object with a "$" key. libbson writes and reads it.

/// The text of the value. Empty if the value contains bytes that are not UTF-8.
std::string extendedText(const bson_iter_t& value);

/// Copies the document and converts each object that is exactly the text of such a value into that value.
/// Other objects with "$" keys stay objects. The document must not be nested deeper than BSONObj::kMaxDepth.
/// `copy` must be empty before the call. Returns false if the result is too large for a document.
bool readExtended(const bson_t& plain, bson_t& copy);

} // namespace bson
