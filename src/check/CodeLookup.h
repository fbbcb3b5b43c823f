#pragma once

#include <QString>

namespace TC {

/// A full code, market first: two letters and six digits on the exchanges, three and five on the connects.
inline constexpr int kFullCodeLength = 8;

/// How market and code become the key that a look-up asks for.
enum class EKeyJoin {
    StockKey, ///< as the host joins them, qdStockKey
    Plain,    ///< one behind the other
};

/// Whether a code of eight characters, market first, is understood as well.
enum class EFullCode { Accepted, Refused };

/// Makes a full code of one that names a stock: on SH, on SZ, or full already. False leaves the code as it
/// came. Reports nothing.
bool resolveStockCode(QString& code, EKeyJoin join, EFullCode fullCode = EFullCode::Accepted);

} // namespace TC
