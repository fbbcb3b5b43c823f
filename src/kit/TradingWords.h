#pragma once

#include "orderservice/records/Enums.h"

#include <QString>

namespace kit {

/// The usual Chinese words for sources, families, orders and prices. A number without its own word is shown
/// after a general word. Any thread.
QString sourceWord(TC::EOrderStrategyType type);
QString familyWord(TC::EOrderStrategyTradeType type);
/// orderType: an order-type number of records/OrderTypes.h.
QString orderWord(int orderType);
QString priceWord(TC::EPriceType type);

} // namespace kit
