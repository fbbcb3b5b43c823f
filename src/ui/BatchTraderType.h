#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"

namespace TC {

/// The trader type of the batch that is being confirmed. The dialog sets it before its table prepares its
/// columns. Main thread.
ORDERSERVICE_EXPORT void setBatchTraderType(EQdTraderType traderType);
ORDERSERVICE_EXPORT EQdTraderType batchTraderType();

/// Whether the trader type has contracts (合约) instead of stocks: futures, gold, options on futures.
ORDERSERVICE_EXPORT bool isFutureLike(EQdTraderType traderType);

} // namespace TC
