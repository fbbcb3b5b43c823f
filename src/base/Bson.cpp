#include "base/Bson.h"

#include "base/BsonText.h"
#include "base/Text.h"

#include <boost/make_shared.hpp>

#include <bson/bson.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale.h>
#include <string_view>
#include <system_error>

namespace bson {
namespace {

using CBytes = std::vector<std::uint8_t>;

// A document without elements is its length and the closing zero: five bytes.
constexpr std::size_t kEmptyDocumentSize = 5;

/// Whether documents stand in each other further than so many levels down. Asked before anything of the
/// library walks them, since it does so by recursion without a limit.
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
    // libbson ends the process over fewer bytes than it can read a length from.
    return bytes.size() >= kEmptyDocumentSize &&
           !isDeeperThan(BSONObj::kMaxDepth, bytes.data(), bytes.size()) &&
           bson_init_static(&view, bytes.data(), bytes.size()) &&
           bson_validate(&view, BSON_VALIDATE_NONE, nullptr);
}

/// Numbers are read with a point while it lives, whatever the locale of the process: the library asks the
/// thread's locale.
class CClassicLocale {
public:
    CClassicLocale() : m_previous(::uselocale(classic())) {}
    ~CClassicLocale() { ::uselocale(m_previous); }
    CClassicLocale(const CClassicLocale&) = delete;
    CClassicLocale& operator=(const CClassicLocale&) = delete;

private:
    static locale_t classic() {
        static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }
    locale_t m_previous;
};

struct CDestroy {
    void operator()(bson_json_reader_t* reader) const { bson_json_reader_destroy(reader); }
};

/// The place of the quote that ends the string which begins at `at`; the end of the text where none does.
std::size_t endOfString(std::string_view text, std::size_t at) {
    for (std::size_t i = at + 1; i < text.size(); ++i) {
        if (text[i] == '"') return i;
        if (text[i] == '\\') ++i;
    }
    return text.size();
}

/// Holds a whole number to 64 bits: the library lets some longer ones wrap around.
void checkNumber(std::string_view number) {
    if (number.find_first_of(".eE") != std::string_view::npos) return;
    std::int64_t value = 0;
    if (std::from_chars(number.data(), number.data() + number.size(), value).ec ==
        std::errc::result_out_of_range) {
        throw CJsonError("the text is no JSON object: Number \"" + std::string(number) +
                         "\" is out of range");
    }
}

/// The place behind the bracket that closes the first one of the text, or the end of the text; looks at the
/// numbers before it.
std::size_t endOfFirstObject(std::string_view text) {
    constexpr std::string_view kDigits = "-0123456789";
    constexpr std::string_view kNumber = "+-.0123456789eE";
    int open = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            i = endOfString(text, i);
        } else if (c == '{' || c == '[') {
            ++open;
        } else if ((c == '}' || c == ']') && --open == 0) {
            return i + 1;
        } else if (kDigits.find(c) != std::string_view::npos) {
            const std::size_t end = std::min(text.find_first_not_of(kNumber, i), text.size());
            checkNumber(text.substr(i, end - i));
            i = end - 1;
        }
    }
    return text.size();
}

/// What the library would let pass: arrays as documents, things behind the object, integers above 64 bits,
/// overlong UTF-8.
void checkFrame(const std::string& text) {
    constexpr const char* kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) throw CJsonError("the text is empty; expected a JSON object");
    if (text[first] != '{') throw CJsonError("the text does not begin with {; expected a JSON object");
    if (text.find_first_not_of(kBlanks, endOfFirstObject(text)) != std::string::npos) {
        throw CJsonError("the text goes on behind its object; expected one JSON object");
    }
    if (text.size() > std::numeric_limits<std::int32_t>::max()) throw CJsonError("the text is too long");
    if (!utils::isValidUtf8(text.data(), text.size())) throw CJsonError("the text is not UTF-8");
}

/// The bytes of the one object that the text holds.
CBytes parse(const std::string& text) {
    constexpr std::size_t kDefaultBuffer = 0;
    const CClassicLocale locale;
    const std::unique_ptr<bson_json_reader_t, CDestroy> reader(
        bson_json_data_reader_new(true, kDefaultBuffer));
    bson_json_data_reader_ingest(reader.get(), reinterpret_cast<const std::uint8_t*>(text.data()),
                                 text.size());
    bson_t document = BSON_INITIALIZER;
    bson_error_t error = {};
    const int found = bson_json_reader_read(reader.get(), &document, &error);
    const CBytes bytes(bson_get_data(&document), bson_get_data(&document) + document.len);
    bson_destroy(&document);
    if (found == 1) return bytes;
    throw CJsonError(std::string("the text is no JSON object: ") +
                     (found < 0 ? error.message : "nothing in it"));
}

/// Finds the key and holds it to its type; false where it is absent.
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

BSONObj fromjson(const std::string& text) {
    checkFrame(text);
    try {
        return BSONObj(parse(text));
    } catch (const std::invalid_argument&) {
        throw CJsonError("the text is no JSON object that a document can hold");
    }
}

struct BSONObjBuilder::CDocument {
    CDocument() { bson_init(&document); }
    ~CDocument() { bson_destroy(&document); }
    CDocument(const CDocument&) = delete;
    CDocument& operator=(const CDocument&) = delete;

    bson_t document;
};

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
    expect(appendText(m_pDocument->document, key, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, const char* value) {
    return append(key, std::string(value));
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, std::int32_t value) {
    expect(bson_append_int32(&m_pDocument->document, key, -1, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, std::int64_t value) {
    expect(bson_append_int64(&m_pDocument->document, key, -1, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, bool value) {
    expect(bson_append_bool(&m_pDocument->document, key, -1, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, double value) {
    expect(bson_append_double(&m_pDocument->document, key, -1, value), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, const std::vector<std::string>& values) {
    CDocument array;
    std::size_t place = 0;
    for (const std::string& value : values) {
        expect(appendText(array.document, std::to_string(place++).c_str(), value), key);
    }
    expect(bson_append_array(&m_pDocument->document, key, -1, &array.document), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::append(const char* key, const BSONObj& value) {
    bson_t view;
    bson_init_static(&view, value.bytes().data(), value.bytes().size());
    expect(bson_append_document(&m_pDocument->document, key, -1, &view), key);
    return *this;
}

BSONObjBuilder& BSONObjBuilder::appendAllBut(const char* key, const BSONObj& document) {
    bson_t view;
    bson_init_static(&view, document.bytes().data(), document.bytes().size());
    bson_iter_t iter;
    for (bson_iter_init(&iter, &view); bson_iter_next(&iter);) {
        if (std::string_view(bson_iter_key(&iter)) == key) continue;
        expect(bson_append_iter(&m_pDocument->document, nullptr, -1, &iter), bson_iter_key(&iter));
    }
    return *this;
}

BSONObj BSONObjBuilder::obj() const {
    const std::uint8_t* bytes = bson_get_data(&m_pDocument->document);
    return BSONObj(CBytes(bytes, bytes + m_pDocument->document.len));
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
