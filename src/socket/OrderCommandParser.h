#pragma once

#include "gates/StrategyRegistry.h"
#include "records/OrderParam.h"

#include <string>
#include <string_view>

namespace TC {

/// Reads the argument of `placeorder` into the record. True where it was understood. False leaves a text for
/// the reply behind "Bad Param", UTF-8 and often empty. Throws boost::bad_lexical_cast where a number cannot
/// be read. On the listener's thread; asks the registry and the host's baskets, accounts and portfolios only
/// where the order needs them.
bool parseSocketOrder(std::string_view argument, IStrategyRegistry& registry, COrderParam& order,
                      std::string& error);

} // namespace TC
