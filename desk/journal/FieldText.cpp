#include "desk/journal/FieldText.h"

#include "desk/journal/Json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>

namespace desk {
namespace {

/// A record of a command with two accounts has about this many characters.
constexpr std::size_t kUsualSize = 2048;

/// CJson writes numbers in this range without an exponent.
constexpr double kSmallestFixed = 1e-4;
constexpr double kLargestFixed = 1e15;
/// Room for the sign, the digits before the point, the point, and the digits after it.
constexpr std::size_t kFixedSize = 48;

/// Whether the byte is written as it is. Other bytes need an escape, or belong to a character that must be
/// checked.
bool isPlain(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x20 && code < 0x80 && byte != '"' && byte != '\\';
}

} // namespace

CFieldText::CFieldText() {
    m_strText.reserve(kUsualSize);
}

/// Appends `count` characters and returns a pointer to the first. The caller must overwrite all of them.
char* CFieldText::extend(std::size_t count) {
    const std::size_t end = m_strText.size();
    m_strText.resize(end + count);
    return m_strText.data() + end;
}

void CFieldText::add(const char* key, const std::string& text) {
    addKey(key);
    addText(text);
}

void CFieldText::addText(const std::string& text) {
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        char* at = extend(text.size() + 2);
        *at = '"';
        text.copy(at + 1, text.size());
        at[text.size() + 1] = '"';
    } else {
        m_strText += CJson(text).dump(-1, ' ', false, CJson::error_handler_t::replace);
    }
}

void CFieldText::add(const char* key, bool value) {
    addKey(key);
    m_strText += value ? "true" : "false";
}

void CFieldText::add(const char* key, std::int64_t value) {
    addKey(key);
    char digits[24];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    m_strText.append(digits, end);
}

void CFieldText::add(const char* key, int value) {
    if (TC::isUnset(value))
        addNull(key);
    else
        add(key, static_cast<std::int64_t>(value));
}

void CFieldText::add(const char* key, double value) {
    addKey(key);
    addNumber(value);
}

void CFieldText::add(const std::string& key, double value) {
    addComma();
    addText(key);
    m_strText += ':';
    addNumber(value);
}

void CFieldText::addNumber(double value) {
    if (TC::isInvalidPrice(value)) {
        m_strText += "null";
    } else if (const double magnitude = std::fabs(value);
               magnitude >= kSmallestFixed && magnitude < kLargestFixed) {
        char digits[kFixedSize];
        const auto end =
            std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed).ptr;
        m_strText.append(digits, end);
        if (value == std::trunc(value)) m_strText += ".0";
    } else {
        m_strText += CJson(value).dump();
    }
}

void CFieldText::add(const char* key, const CJson& value) {
    addKey(key);
    m_strText += value.dump(-1, ' ', false, CJson::error_handler_t::replace);
}

void CFieldText::addNull(const char* key) {
    addKey(key);
    m_strText += "null";
}

void CFieldText::begin(const char* key, char bracket) {
    addKey(key);
    m_strText += bracket;
}

/// The first element of an object or a list has no comma before it.
void CFieldText::addComma() {
    if (!m_strText.empty() && m_strText.back() != '{' && m_strText.back() != '[') m_strText += ',';
}

void CFieldText::addKey(const char* key) {
    addComma();
    if (key == nullptr) return;
    const std::size_t size = std::strlen(key);
    char* at = extend(size + 3);
    *at = '"';
    std::memcpy(at + 1, key, size);
    std::memcpy(at + 1 + size, "\":", 2);
}

} // namespace desk
