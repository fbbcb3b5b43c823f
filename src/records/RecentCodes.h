#pragma once

#include "orderservice/base/Export.h"

#include <QString>

#include <array>
#include <string>
#include <string_view>

namespace TC {

/// The codes of the lines that were read last. A file or a client names the same instruments again and
/// again; its orders then share one text, which saves memory and time for each of them. Not thread-safe.
class ORDERSERVICE_EXPORT CRecentCodes {
public:
    /// The same result as codeOfField.
    const QString& codeOf(std::string_view field);

private:
    struct CEntry {
        std::string m_strField;
        QString m_code;
    };
    /// Each field has one possible place. A later field of the same place replaces the earlier one.
    std::array<CEntry, 64> m_entries;
};

} // namespace TC
