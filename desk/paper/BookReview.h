#pragma once

#include "base/KNError.h"
#include "desk/config/DeskConfig.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBook.h"

#include <vector>

namespace desk {

/// Compares what a loaded book holds with the folder that it is to trade in. Positions, shares owed and
/// waiting orders that accounts of the folder may still trade must have the multiplier that their instrument
/// has now, and must have been paid as its kind is: closing them would book a gain or a loss that nobody
/// made. What has left the folder is passed over: the broker matches nothing of it.
/// Fails with kPaperBadRequest and names account, instrument and the ways out.
[[nodiscard]] utils::KNError reviewBook(const CPaperBook& book, const IQuoteSource& quotes,
                                        const std::vector<CAccountEntry>& accounts);

} // namespace desk
