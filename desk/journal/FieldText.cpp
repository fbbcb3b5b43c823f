#include "desk/journal/FieldText.h"

#include "desk/journal/Json.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace desk {
namespace {

/// Whether the byte is written as it is. Other bytes need an escape, or belong to a character that must be
/// checked.
bool isPlain(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x20 && code < 0x80 && byte != '"' && byte != '\\';
}

} // namespace

void CFieldText::add(const char* key, const std::string& text) {
    addKey(key);
    addText(text);
}

void CFieldText::addText(const std::string& text) {
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        m_strText += '"';
        m_strText += text;
        m_strText += '"';
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
    m_strText += std::to_string(value);
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
    if (TC::isInvalidPrice(value))
        m_strText += "null";
    else
        m_strText += CJson(value).dump();
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
    m_strText += '"';
    m_strText += key;
    m_strText += "\":";
}

} // namespace desk
