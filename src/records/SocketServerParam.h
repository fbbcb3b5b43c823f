#pragma once

#include <QString>

namespace TC {

/// Settings of one socket listener that strategies may share.
struct CFutrueSocketServerParam {
    QString m_strUser;
    QString m_strPass;
    int m_nRefCount = 0; ///< strategies on the listener
};

} // namespace TC
