#include "orderservice/base/BsonText.h"

#include "orderservice/base/Bson.h"
#include "orderservice/base/BsonExtended.h"
#include "orderservice/base/Text.h"

#include <QString>

#include <bson/bson.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace bson {
namespace {

/// Doubles from this value on have no fraction. They are written with an exponent, because plain digits would
/// be read as an integer and could be too long for an integer.
constexpr double kPlainDigitsBelow = 1e16;
/// Buffer size. It is larger than the longest text of a double.
constexpr std::size_t kNumberSize = 32;

class CJsonWriter {
public:
    void writeDocument(bson_iter_t& iter) { writeElements(iter, '{', '}', true); }
    CJsonText take() { return std::move(m_json); }

private:
    void writeElements(bson_iter_t& iter, char open, char close, bool hasKeys);
    void writeValue(const bson_iter_t& iter);
    void writeNested(const bson_iter_t& iter);
    void writeDouble(const bson_iter_t& iter);
    void writeString(std::string_view text);
    void writeEscaped(std::string_view text);
    void writeExtended(const bson_iter_t& iter);

    CJsonText m_json;
    std::string& m_text = m_json.text;
};

void CJsonWriter::writeElements(bson_iter_t& iter, char open, char close, bool hasKeys) {
    m_text += open;
    for (const char* separator = " "; bson_iter_next(&iter); separator = ", ") {
        m_text += separator;
        if (hasKeys) {
            writeString(bson_iter_key(&iter));
            m_text += " : ";
        }
        writeValue(iter);
    }
    m_text += ' ';
    m_text += close;
}

void CJsonWriter::writeValue(const bson_iter_t& iter) {
    switch (bson_iter_type(&iter)) {
    case BSON_TYPE_DOUBLE:
        return writeDouble(iter);
    case BSON_TYPE_INT32:
        m_text += std::to_string(bson_iter_int32(&iter));
        return;
    case BSON_TYPE_INT64:
        m_text += std::to_string(bson_iter_int64(&iter));
        return;
    case BSON_TYPE_BOOL:
        m_text += bson_iter_bool(&iter) ? "true" : "false";
        return;
    case BSON_TYPE_NULL:
        m_text += "null";
        return;
    case BSON_TYPE_DOCUMENT:
    case BSON_TYPE_ARRAY:
        return writeNested(iter);
    case BSON_TYPE_UTF8: {
        std::uint32_t size = 0;
        const char* text = bson_iter_utf8(&iter, &size);
        return writeString({text, size});
    }
    default:
        return writeExtended(iter);
    }
}

void CJsonWriter::writeNested(const bson_iter_t& iter) {
    const bool isArray = BSON_ITER_HOLDS_ARRAY(&iter);
    bson_iter_t child;
    if (!bson_iter_recurse(&iter, &child)) return writeExtended(iter);
    writeElements(child, isArray ? '[' : '{', isArray ? ']' : '}', !isArray);
}

void CJsonWriter::writeDouble(const bson_iter_t& iter) {
    const double value = bson_iter_double(&iter);
    if (!std::isfinite(value)) return writeExtended(iter);
    const bool isSmall = std::fabs(value) < kPlainDigitsBelow;
    if (isSmall && value == std::trunc(value)) {
        m_text += std::to_string(static_cast<std::int64_t>(value));
        return;
    }
    char digits[kNumberSize];
    const auto format = isSmall ? std::chars_format::general : std::chars_format::scientific;
    m_text.append(digits, std::to_chars(digits, digits + sizeof digits, value, format).ptr);
}

void CJsonWriter::writeString(std::string_view text) {
    m_text += '"';
    if (utils::isValidUtf8(text.data(), text.size())) {
        writeEscaped(text);
    } else {
        m_json.isRepaired = true;
        const QByteArray repaired = QString::fromUtf8(text.data(), static_cast<int>(text.size())).toUtf8();
        writeEscaped({repaired.constData(), static_cast<std::size_t>(repaired.size())});
    }
    m_text += '"';
}

void CJsonWriter::writeEscaped(std::string_view text) {
    constexpr std::string_view kNamed = "\"\\\b\f\n\r\t";
    constexpr std::string_view kNames = "\"\\bfnrt";
    constexpr char kHex[] = "0123456789abcdef";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const std::size_t named = kNamed.find(c);
        if (named != std::string_view::npos) {
            m_text += {'\\', kNames[named]};
        } else if (byte < ' ') {
            m_text += {'\\', 'u', '0', '0', kHex[byte >> 4], kHex[byte & 0xF]};
        } else {
            m_text += c;
        }
    }
}

/// libbson writes the types that JSON lacks. It writes nothing if the value contains bytes that are not
/// UTF-8.
void CJsonWriter::writeExtended(const bson_iter_t& iter) {
    const std::string text = extendedText(iter);
    if (text.empty()) m_json.isRepaired = true;
    m_text += text.empty() ? std::string("null") : text;
}

} // namespace

CJsonText jsonText(const BSONObj& object) {
    bson_iter_t iter;
    bson_iter_init_from_data(&iter, object.bytes().data(), object.bytes().size());
    CJsonWriter writer;
    writer.writeDocument(iter);
    return writer.take();
}

} // namespace bson
