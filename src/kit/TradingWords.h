#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"

#include <QString>

namespace kit {

/// The usual Chinese words for sources, families, orders and prices. A number without its own word is shown
/// after a general word. Any thread.
ORDERSERVICE_EXPORT QString sourceWord(TC::EOrderStrategyType type);
ORDERSERVICE_EXPORT QString familyWord(TC::EOrderStrategyTradeType type);
/// orderType: an order-type number of records/OrderTypes.h.
ORDERSERVICE_EXPORT QString orderWord(int orderType);
ORDERSERVICE_EXPORT QString priceWord(TC::EPriceType type);

} // namespace kit
