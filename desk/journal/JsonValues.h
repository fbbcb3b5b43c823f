#pragma once

#include "base/Unset.h"
#include "desk/journal/Json.h"

#include <nlohmann/json.hpp>

#include <QString>

/// Values of the journal: what nobody has set is null.
namespace desk {

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

} // namespace desk
