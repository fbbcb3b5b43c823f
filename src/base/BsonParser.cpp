// fromjson: reads one JSON object (RFC 8259) into a document. The parser of nlohmann implements the grammar.
// This file also refuses texts that the parser accepts although the grammar does not allow them, and values
// that a document cannot store.
#include "orderservice/base/Bson.h"
#include "orderservice/base/BsonExtended.h"
#include "orderservice/base/Text.h"

#include <bson/bson.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bson {
namespace {

using nlohmann::json;

[[noreturn]] void refuseValue(const std::string& what) {
    throw CJsonError("a document cannot hold " + what);
}

/// Shortens the text for an error message, because one token may have many megabytes.
std::string shortened(std::string text) {
    constexpr std::size_t kMost = 300;
    constexpr unsigned char kContinuationBits = 0xC0, kContinuation = 0x80;
    if (text.size() <= kMost) return text;
    std::size_t end = kMost;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & kContinuationBits) == kContinuation)
        --end;
    return text.substr(0, end) + "...";
}

/// The parser's error message without the names of the parser's classes.
std::string reasonOf(const std::string& what) {
    constexpr std::string_view kBeforePlace = "parse error at ";
    const std::size_t classEnd = what.find("] ");
    std::size_t begin = classEnd != std::string::npos ? classEnd + 2 : 0;
    if (what.compare(begin, kBeforePlace.size(), kBeforePlace) == 0) begin += kBeforePlace.size();
    return shortened(what.substr(begin));
}

/// Builds the document from the parser's events. The parser does not recurse, so deep nesting needs no stack.
/// If the nesting is too deep for a document, the opening bracket is refused. Throws CJsonError.
class CDocumentReader : public json::json_sax_t {
public:
    explicit CDocumentReader(std::size_t textSize) : m_nTextSize(textSize) {}
    ~CDocumentReader() override { bson_destroy(&m_root); }
    CDocumentReader(const CDocumentReader&) = delete;
    CDocumentReader& operator=(const CDocumentReader&) = delete;

    bool null() override { return expect(bson_append_null(&top(), nextKey(), -1)); }
    bool boolean(bool value) override { return expect(bson_append_bool(&top(), nextKey(), -1, value)); }
    bool number_integer(number_integer_t value) override { return appendInteger(value); }
    bool number_unsigned(number_unsigned_t value) override;
    bool number_float(number_float_t value, const string_t& text) override;
    bool string(string_t& value) override;
    bool binary(binary_t&) override { return false; } // JSON has no binary values
    bool start_object(std::size_t) override { return begin(EKind::Object); }
    bool key(string_t& name) override;
    bool end_object() override { return end(); }
    bool start_array(std::size_t) override { return begin(EKind::Array); }
    bool end_array() override { return end(); }
    bool parse_error(std::size_t position, const std::string& lastToken,
                     const nlohmann::detail::exception& error) override;

    /// The document. It is complete after the parser has read the whole text.
    const bson_t& document() const { return m_root; }
    bool hasDollarKeys() const { return m_hasDollarKeys; }

private:
    enum class EKind { Object, Array };
    /// An object or array that is still open. Its document points into the parent's document, so a level must
    /// not move in memory.
    struct CLevel {
        EKind kind;
        bson_t* document;
        bson_t own{};          ///< used by all levels except the first
        std::string key{};     ///< key of the next element
        std::size_t count = 0; ///< number of array elements so far
    };

    bool begin(EKind kind);
    bool end();
    bool appendInteger(std::int64_t value);
    static bool expect(bool isAppended);
    bson_t& top() { return *m_levels.back()->document; }
    const char* nextKey();

    const std::size_t m_nTextSize;
    bool m_hasDollarKeys = false;
    bson_t m_root = BSON_INITIALIZER;
    std::vector<std::unique_ptr<CLevel>> m_levels;
};

/// The key of the next element. In an array it is the index of the element. Valid until the next call.
const char* CDocumentReader::nextKey() {
    CLevel& level = *m_levels.back();
    if (level.kind == EKind::Array) level.key = std::to_string(level.count++);
    return level.key.c_str();
}

bool CDocumentReader::expect(bool isAppended) {
    if (!isAppended) refuseValue("so much");
    return true;
}

bool CDocumentReader::number_unsigned(number_unsigned_t value) {
    if (value > static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max()))
        refuseValue("the number " + std::to_string(value));
    return appendInteger(static_cast<std::int64_t>(value));
}

bool CDocumentReader::appendInteger(std::int64_t value) {
    const bool isNarrow = value >= std::numeric_limits<std::int32_t>::min() &&
                          value <= std::numeric_limits<std::int32_t>::max();
    if (isNarrow) return expect(bson_append_int32(&top(), nextKey(), -1, static_cast<std::int32_t>(value)));
    return expect(bson_append_int64(&top(), nextKey(), -1, value));
}

/// The parser also reports integers beyond 64 bits as doubles. They are refused, because a double would
/// change the number.
bool CDocumentReader::number_float(number_float_t value, const string_t& text) {
    if (text.find_first_of(".eE") == string_t::npos) refuseValue("the number " + shortened(text));
    return expect(bson_append_double(&top(), nextKey(), -1, value));
}

bool CDocumentReader::string(string_t& value) {
    return expect(bson_append_utf8(&top(), nextKey(), -1, value.data(), static_cast<int>(value.size())));
}

bool CDocumentReader::key(string_t& name) {
    if (name.find('\0') != string_t::npos) refuseValue("a key with a NUL character");
    if (!name.empty() && name.front() == '$') m_hasDollarKeys = true;
    m_levels.back()->key = std::move(name);
    return true;
}

bool CDocumentReader::begin(EKind kind) {
    if (m_levels.size() >= static_cast<std::size_t>(BSONObj::kMaxDepth))
        refuseValue("more than " + std::to_string(BSONObj::kMaxDepth) + " levels");
    auto level = std::make_unique<CLevel>(CLevel{kind, &m_root});
    if (!m_levels.empty()) {
        level->document = &level->own;
        const char* name = nextKey();
        expect(kind == EKind::Array ? bson_append_array_begin(&top(), name, -1, &level->own)
                                    : bson_append_document_begin(&top(), name, -1, &level->own));
    }
    m_levels.push_back(std::move(level));
    return true;
}

bool CDocumentReader::end() {
    const std::unique_ptr<CLevel> level = std::move(m_levels.back());
    m_levels.pop_back();
    if (m_levels.empty()) return true;
    return expect(level->kind == EKind::Array ? bson_append_array_end(&top(), level->document)
                                              : bson_append_document_end(&top(), level->document));
}

bool CDocumentReader::parse_error(std::size_t position, const std::string& lastToken,
                                  const nlohmann::detail::exception& error) {
    constexpr int kNumberOverflow = 406;
    if (error.id == kNumberOverflow) refuseValue("the number " + shortened(lastToken));
    const bool isCut = position > m_nTextSize;
    throw CJsonError("the text is not a JSON object: " +
                     (isCut ? std::string("Incomplete JSON") : reasonOf(error.what())));
}

/// Refuses texts that the parser would accept: a text that is not an object, a text with a NUL byte, which
/// would end it early, and a text with a byte order mark. It also refuses a text that is too long for the
/// 31-bit length of BSON.
void checkFrame(const std::string& text) {
    constexpr const char* kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) throw CJsonError("the text is empty; expected a JSON object");
    if (text[first] != '{') throw CJsonError("the text does not begin with {; expected a JSON object");
    if (text.size() > std::numeric_limits<std::int32_t>::max()) throw CJsonError("the text is too long");
    if (text.find('\0') != std::string::npos) throw CJsonError("the text has a NUL byte");
    if (!utils::isValidUtf8(text.data(), text.size())) throw CJsonError("the text is not UTF-8");
}

BSONObj takeDocument(const bson_t& document) {
    const std::uint8_t* bytes = bson_get_data(&document);
    return BSONObj(std::vector<std::uint8_t>(bytes, bytes + document.len));
}

} // namespace

BSONObj fromjson(const std::string& text) {
    checkFrame(text);
    const CClassicLocale locale;
    CDocumentReader reader(text.size());
    constexpr bool kWholeText = true;
    json::sax_parse(text, &reader, json::input_format_t::json, kWholeText);
    if (!reader.hasDollarKeys()) return takeDocument(reader.document());
    CBsonDocument typed;
    if (!readExtended(reader.document(), typed.get())) refuseValue("so much");
    return takeDocument(typed.get());
}

} // namespace bson
