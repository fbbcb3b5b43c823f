#pragma once

#include "orderservice/gates/StrategyRegistry.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/RecentCodes.h"

#include <string>
#include <string_view>

namespace TC {

/// Reads the argument of `placeorder` into the record. True if it was understood. If false, `error` is the
/// text that follows "Bad Param" in the reply; it is UTF-8 and often empty. Throws boost::bad_lexical_cast if
/// a number cannot be read. Called on the listener's thread. Uses the registry and the host's baskets,
/// accounts and portfolios only if the order needs them.
bool parseSocketOrder(std::string_view argument, IStrategyRegistry& registry, CRecentCodes& codes,
                      COrderParam& order, std::string& error);

} // namespace TC
