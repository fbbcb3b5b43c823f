#pragma once

#include "desk/journal/Json.h"
#include "orderservice/base/Unset.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

namespace desk {

/// Writes the keys of a frequent record as JSON text, much faster than CJson. The values are those of CJson,
/// without the braces. A number may have fewer or other last digits; it is read as the same number. Values
/// that are not set become null. Keys are plain ASCII unless stated otherwise. Not thread-safe.
class CFieldText {
public:
    CFieldText();

    void add(const char* key, const std::string& text);
    void add(const char* key, const char* text) { add(key, std::string(text)); }
    void add(const char* key, bool value);
    void add(const char* key, std::int64_t value);
    /// Null if the value is not set.
    void add(const char* key, int value);
    /// Null if the value is not set or not finite.
    void add(const char* key, double value);
    /// The same for a key that is not plain text.
    void add(const std::string& key, double value);
    void add(const char* key, const CJson& value);
    void addNull(const char* key);
    /// Enumerations are written as numbers. Null if the value is not set.
    template<typename E, typename = std::enable_if_t<std::is_enum_v<E>>>
    void add(const char* key, E value) {
        if (TC::isUnset(value))
            addNull(key);
        else
            add(key, static_cast<std::int64_t>(value));
    }

    /// Begins an object or a list. end() ends it. The key may be null inside a list.
    void beginObject(const char* key) { begin(key, '{'); }
    void beginList(const char* key) { begin(key, '['); }
    void endObject() { m_strText += '}'; }
    void endList() { m_strText += ']'; }

    const std::string& text() const { return m_strText; }
    /// Returns the text. Call it last.
    std::string takeText() { return std::move(m_strText); }

private:
    char* extend(std::size_t count);
    void begin(const char* key, char bracket);
    void addComma();
    void addKey(const char* key);
    void addText(const std::string& text);
    void addNumber(double value);

    std::string m_strText;
};

} // namespace desk
