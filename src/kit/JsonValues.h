#pragma once

#include "base/Bson.h"
#include "base/Unset.h"
#include "kit/Json.h"

#include <nlohmann/json.hpp>

#include <QString>

#include <string>

/// Values of a record as JSON: what is not set is null, and what is not finite is written as null. Pure; any
/// thread.
namespace kit {

template<typename E>
CJson enumValue(E value) {
    return TC::isUnset(value) ? CJson() : CJson(static_cast<int>(value));
}

inline CJson numberValue(int value) {
    return TC::isUnset(value) ? CJson() : CJson(value);
}

inline CJson numberValue(double value) {
    return TC::isInvalidPrice(value) ? CJson() : CJson(value);
}

inline CJson textValue(const QString& text) {
    return text.toStdString();
}

/// The document as an object; its text if it cannot be written as JSON.
inline CJson documentValue(const bson::BSONObj& document) {
    if (document.isEmpty()) return CJson::object();
    const std::string text = document.jsonString();
    CJson object = CJson::parse(text, nullptr, false);
    return object.is_discarded() ? CJson(text) : object;
}

} // namespace kit
