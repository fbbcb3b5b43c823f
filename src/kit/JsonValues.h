#pragma once

#include "orderservice/base/Bson.h"
#include "orderservice/base/Unset.h"
#include "orderservice/kit/Json.h"

#include <nlohmann/json.hpp>

#include <QString>

#include <cmath>
#include <string>

/// Values of a record as JSON. A value that is not set or not finite becomes null. Pure; any thread.
namespace kit {

template<typename E>
CJson enumValue(E value) {
    return TC::isUnset(value) ? CJson() : CJson(static_cast<int>(value));
}

inline CJson numberValue(int value) {
    return TC::isUnset(value) ? CJson() : CJson(value);
}

inline CJson numberValue(double value) {
    return TC::isInvalidPrice(value) || !std::isfinite(value) ? CJson() : CJson(value);
}

inline CJson textValue(const QString& text) {
    return text.toStdString();
}

/// The document as an object. If it cannot be written as JSON, its text is returned as a JSON string.
inline CJson documentValue(const bson::BSONObj& document) {
    if (document.isEmpty()) return CJson::object();
    const std::string text = document.jsonString();
    CJson object = CJson::parse(text, nullptr, false);
    return object.is_discarded() ? CJson(text) : object;
}

} // namespace kit
