#include "orderservice/records/RecentCodes.h"

#include "orderservice/records/OrderParam.h"

#include <cstddef>

namespace TC {

const QString& CRecentCodes::codeOf(std::string_view field) {
    std::size_t hash = field.size();
    for (const char byte : field)
        hash = hash * 31 + static_cast<unsigned char>(byte);
    CEntry& entry = m_entries[hash % m_entries.size()];
    if (entry.m_strField != field) {
        entry.m_code = codeOfField(field);
        entry.m_strField = field;
    }
    return entry.m_code;
}

} // namespace TC
