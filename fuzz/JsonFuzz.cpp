// Reads any bytes as the text of a JSON object. fromjson must accept what a second strict reader accepts,
// with the same keys and values in the same order. It must refuse everything else, and also text that a
// document cannot hold.
#include "orderservice/base/Bson.h"

#include <bson/bson.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <string_view>

namespace {

constexpr const char* kBlanks = " \t\r\n";

/// Builds a document from the events of the other reader. It receives numbers as text and converts them
/// itself.
class CReference : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, CReference> {
public:
    CReference() = default;
    ~CReference() {
        while (!m_levels.empty()) {
            bson_destroy(&m_levels.back().document);
            m_levels.pop_back();
        }
    }
    CReference(const CReference&) = delete;
    CReference& operator=(const CReference&) = delete;

    bool Null() { return bson_append_null(&top(), next().c_str(), -1); }
    bool Bool(bool value) { return bson_append_bool(&top(), next().c_str(), -1, value); }
    bool RawNumber(const char* text, rapidjson::SizeType size, bool);
    bool String(const char* text, rapidjson::SizeType size, bool);
    bool Key(const char* text, rapidjson::SizeType size, bool);
    bool StartObject() { return begin(false); }
    bool EndObject(rapidjson::SizeType) { return end(); }
    bool StartArray() { return begin(true); }
    bool EndArray(rapidjson::SizeType) { return end(); }

    /// False if a document cannot hold the text.
    bool isHoldable = true;
    bool hasDollarKey = false;
    std::string bytes; ///< bytes of the whole document

private:
    struct CLevel {
        bool isArray;
        std::string key{};
        std::size_t count = 0;
        bson_t document = BSON_INITIALIZER;
    };

    bool begin(bool isArray);
    bool end();
    bson_t& top() { return m_levels.back().document; }
    const std::string& next();
    bool holds(bool condition) {
        isHoldable = isHoldable && condition;
        return true;
    }

    std::deque<CLevel> m_levels; ///< each level has a document, appended to its parent at the end
};

const std::string& CReference::next() {
    CLevel& level = m_levels.back();
    if (level.isArray) level.key = std::to_string(level.count++);
    return level.key;
}

bool CReference::RawNumber(const char* text, rapidjson::SizeType size, bool) {
    const std::string_view number(text, size);
    const std::string key = next();
    if (number.find_first_of(".eE") == std::string_view::npos) {
        std::int64_t value = 0;
        if (std::from_chars(text, text + size, value).ec != std::errc()) return holds(false);
        const auto narrow = static_cast<std::int32_t>(value);
        return value == narrow ? bson_append_int32(&top(), key.c_str(), -1, narrow)
                               : bson_append_int64(&top(), key.c_str(), -1, value);
    }
    const double value = std::strtod(std::string(number).c_str(), nullptr);
    return std::isfinite(value) ? bson_append_double(&top(), key.c_str(), -1, value) : holds(false);
}

bool CReference::String(const char* text, rapidjson::SizeType size, bool) {
    return bson_append_utf8(&top(), next().c_str(), -1, text, static_cast<int>(size));
}

bool CReference::Key(const char* text, rapidjson::SizeType size, bool) {
    const std::string_view key(text, size);
    if (!key.empty() && key.front() == '$') hasDollarKey = true;
    m_levels.back().key = key;
    return holds(key.find('\0') == std::string_view::npos);
}

bool CReference::begin(bool isArray) {
    if (!m_levels.empty()) next();
    m_levels.push_back({isArray});
    return holds(m_levels.size() <= static_cast<std::size_t>(bson::BSONObj::kMaxDepth));
}

bool CReference::end() {
    bson_t& ended = top();
    if (m_levels.size() == 1) {
        bytes.assign(reinterpret_cast<const char*>(bson_get_data(&ended)), ended.len);
    } else if (isHoldable) {
        CLevel& parent = m_levels[m_levels.size() - 2];
        const bool isArray = m_levels.back().isArray;
        const bool isAppended = isArray
                                    ? bson_append_array(&parent.document, parent.key.c_str(), -1, &ended)
                                    : bson_append_document(&parent.document, parent.key.c_str(), -1, &ended);
        if (!isAppended) std::abort();
    }
    bson_destroy(&ended);
    m_levels.pop_back();
    return true;
}

/// Whether an escape is only one half of a surrogate pair. The grammar allows this, but such a half has no
/// UTF-8 form. The other reader accepts a second half alone.
bool hasHalfPair(std::string_view text) {
    bool isFirstBefore = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            if (isFirstBefore) return true;
            continue;
        }
        unsigned unit = 0;
        const bool isUnit = i + 1 < text.size() && text[i + 1] == 'u' && i + 6 <= text.size() &&
                            std::from_chars(&text[i + 2], &text[i + 2] + 4, unit, 16).ec == std::errc();
        const bool isFirst = isUnit && unit >= 0xD800 && unit < 0xDC00;
        const bool isSecond = isUnit && unit >= 0xDC00 && unit < 0xE000;
        if (isSecond != isFirstBefore) return true;
        isFirstBefore = isFirst;
        i += isUnit ? 5 : 1;
    }
    return isFirstBefore;
}

enum class EVerdict { Object, Other, Unknown };

/// The verdict of the other reader. It treats a NUL byte as the end of the text. It refuses some large
/// exponents, even if the number is 0.
EVerdict verdictOf(const std::string& text, CReference& reference) {
    constexpr unsigned kFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag |
                                rapidjson::kParseNumbersAsStringsFlag;
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos || text[first] != '{' || text.find('\0') != std::string::npos)
        return EVerdict::Other;
    rapidjson::Reader reader;
    rapidjson::MemoryStream stream(text.data(), text.size());
    const rapidjson::ParseResult result = reader.Parse<kFlags>(stream, reference);
    if (result.Code() == rapidjson::kParseErrorNumberTooBig) return EVerdict::Unknown;
    return result.IsError() ? EVerdict::Other : EVerdict::Object;
}

void check(const std::string& text, const CReference& reference, bool isRead, const bson::BSONObj& object) {
    const bool isDue = reference.isHoldable && !hasHalfPair(text);
    if (isRead != isDue) std::abort();
    if (!isRead) return;
    const bson::BSONObj expected(std::vector<std::uint8_t>(reference.bytes.begin(), reference.bytes.end()));
    // An object with a "$" key may represent another type. So only the written texts are compared.
    const bool isSame =
        reference.hasDollarKey ? object.jsonString() == expected.jsonString() : object == expected;
    if (!isSame && text.find("$code") == std::string::npos) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    bool isRead = true;
    bson::BSONObj object;
    try {
        object = bson::fromjson(text);
    } catch (const bson::CJsonError&) {
        isRead = false;
    }
    CReference reference;
    const EVerdict verdict = verdictOf(text, reference);
    if (verdict == EVerdict::Object) check(text, reference, isRead, object);
    if (verdict == EVerdict::Other && isRead) std::abort();
    return 0;
}
