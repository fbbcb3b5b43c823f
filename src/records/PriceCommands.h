#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"

#include <cstddef>
#include <string>

namespace TC {

/// A price command of a table row and its price type.
struct CPriceCommand {
    const char* m_pszCommand;
    int m_nPriceType; ///< an EPriceType; numbers without a name belong to the quote service
};

extern ORDERSERVICE_EXPORT const CPriceCommand kPriceCommands[];
extern ORDERSERVICE_EXPORT const std::size_t kPriceCommandCount;

/// Returns the price type of a command; case-sensitive. A command that is not in the table means
/// EPriceType::Latest.
ORDERSERVICE_EXPORT EPriceType getPriceTypeByCmd(const std::string& cmd);

} // namespace TC
