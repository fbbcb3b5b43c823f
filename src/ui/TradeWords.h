#pragma once

#include "orderservice/records/Enums.h"

#include <QString>

namespace TC {

/// The usual Chinese word for what an operation does, on an account of this trader type. An operation without
/// a word of its own gets 买入 or 卖出, or 开多, 平多, 开空 or 平空 if the trader type has contracts. "-" if
/// the operation is not set. Asks the host for isBuy and isLong. Main thread.
QString tradeWord(EOperationType operation, EQdTraderType traderType);

} // namespace TC
