#include "orderservice/base/BsonExtended.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace bson {
namespace {

constexpr const char* kKey = "v";

locale_t classicLocale() {
    static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

std::string writtenByLibrary(const bson_t& document) {
    std::size_t size = 0;
    char* text = bson_as_relaxed_extended_json(&document, &size);
    const std::string result(text != nullptr ? text : "", size);
    bson_free(text);
    return result;
}

/// The text of a document with the value under kKey.
std::string wrappedText(const bson_iter_t& value) {
    CBsonDocument document;
    bson_append_iter(&document.get(), kKey, -1, &value);
    return writtenByLibrary(document.get());
}

struct CDestroyReader {
    void operator()(bson_json_reader_t* reader) const { bson_json_reader_destroy(reader); }
};

/// Reads one document with libbson, which understands the "$" keys. The text must have been written by
/// libbson.
bool readByLibrary(const std::string& text, bson_t& document) {
    constexpr std::size_t kDefaultBuffer = 0;
    const std::unique_ptr<bson_json_reader_t, CDestroyReader> reader(
        bson_json_data_reader_new(true, kDefaultBuffer));
    bson_json_data_reader_ingest(reader.get(), reinterpret_cast<const std::uint8_t*>(text.data()),
                                 text.size());
    bson_error_t error = {};
    return bson_json_reader_read(reader.get(), &document, &error) == 1;
}

bool hasDollarKey(const bson_iter_t& object) {
    bson_iter_t child;
    return bson_iter_recurse(&object, &child) && bson_iter_next(&child) && bson_iter_key(&child)[0] == '$';
}

/// Reads the object as a value of another type into the document. Returns false if the object is not the text
/// of such a value. Also returns false if the value would be written as a different text, because reading
/// must not change a document.
bool readValue(const bson_iter_t& object, bson_t& document, bson_iter_t& value) {
    const std::string text = wrappedText(object);
    return readByLibrary(text, document) && bson_iter_init_find(&value, &document, kKey) &&
           !BSON_ITER_HOLDS_DOCUMENT(&value) && wrappedText(value) == text;
}

bool copyElement(const bson_iter_t& element, bson_t& copy);

bool copyChildren(const bson_iter_t& parent, bson_t& copy) {
    bson_iter_t child;
    if (!bson_iter_recurse(&parent, &child)) return false;
    while (bson_iter_next(&child)) {
        if (!copyElement(child, copy)) return false;
    }
    return true;
}

bool copyNested(const bson_iter_t& element, bson_t& copy) {
    const bool isArray = BSON_ITER_HOLDS_ARRAY(&element);
    const char* key = bson_iter_key(&element);
    bson_t child;
    const bool isBegun = isArray ? bson_append_array_begin(&copy, key, -1, &child)
                                 : bson_append_document_begin(&copy, key, -1, &child);
    if (!isBegun) return false;
    const bool isCopied = copyChildren(element, child);
    const bool isEnded =
        isArray ? bson_append_array_end(&copy, &child) : bson_append_document_end(&copy, &child);
    return isCopied && isEnded;
}

bool copyElement(const bson_iter_t& element, bson_t& copy) {
    const bool isObject = BSON_ITER_HOLDS_DOCUMENT(&element);
    if (isObject && hasDollarKey(element)) {
        CBsonDocument read;
        bson_iter_t value;
        if (readValue(element, read.get(), value))
            return bson_append_iter(&copy, bson_iter_key(&element), -1, &value);
    }
    if (isObject || BSON_ITER_HOLDS_ARRAY(&element)) return copyNested(element, copy);
    return bson_append_iter(&copy, nullptr, -1, &element);
}

} // namespace

CClassicLocale::CClassicLocale() : m_previous(::uselocale(classicLocale())) {}

CClassicLocale::~CClassicLocale() {
    ::uselocale(m_previous);
}

std::string extendedText(const bson_iter_t& value) {
    constexpr std::string_view kBefore = "{ \"v\" : ";
    constexpr std::string_view kBehind = " }";
    const CClassicLocale locale;
    const std::string whole = wrappedText(value);
    if (whole.size() <= kBefore.size() + kBehind.size()) return {};
    return whole.substr(kBefore.size(), whole.size() - kBefore.size() - kBehind.size());
}

bool readExtended(const bson_t& plain, bson_t& copy) {
    bson_iter_t element;
    if (!bson_iter_init(&element, &plain)) return false;
    while (bson_iter_next(&element)) {
        if (!copyElement(element, copy)) return false;
    }
    return true;
}

} // namespace bson
