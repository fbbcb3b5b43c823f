#pragma once

#include "records/Enums.h"

#include <cstddef>
#include <string>

namespace TC {

/// A price command of a table row and the price type it stands for.
struct CPriceCommand {
    const char* m_pszCommand;
    int m_nPriceType; ///< an EPriceType; the numbers without a name there are the quote service's
};

extern const CPriceCommand kPriceCommands[];
extern const std::size_t kPriceCommandCount;

/// Exact look-up, case kept. A command that is not in the table means EPriceType::Latest.
EPriceType getPriceTypeByCmd(const std::string& cmd);

} // namespace TC
