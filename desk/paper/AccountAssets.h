#pragma once

#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"

#include <optional>

namespace desk {

/// What an account would have if all its positions were closed and all its debts were paid now: its cash, the
/// money that closing the positions would give, less the money owed and the worth of the shares owed. Each
/// instrument is valued at its last price, without one at the previous close, and without a quote at what it
/// cost. `books` must be those of one account. Empty if a worth is beyond kMaxMoney.
std::optional<CMoney> assetsOf(const CPaperBooks& books, const IQuoteSource& quotes);

} // namespace desk
