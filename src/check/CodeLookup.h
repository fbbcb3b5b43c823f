#pragma once

#include <QString>

namespace TC {

/// Length of a full code: the market, then the code. That is two letters and six digits for the exchanges, or
/// three letters and five digits for the connects.
inline constexpr int kFullCodeLength = 8;

/// How market and code are joined to the key of a look-up.
enum class EKeyJoin {
    StockKey, ///< joined by the host's qdStockKey
    Plain,    ///< the market directly followed by the code
};

/// Whether a full code, of eight characters with the market first, is accepted as well.
enum class EFullCode { Accepted, Refused };

/// Replaces the code of a stock by its full code. It looks on SH first, then on SZ, then for a code that is
/// already full. If it finds no stock, it returns false and does not change the code. Reports nothing.
bool resolveStockCode(QString& code, EKeyJoin join, EFullCode fullCode = EFullCode::Accepted);

} // namespace TC
