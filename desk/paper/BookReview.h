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
///
/// Books of an older desk do not tell multipliers. What the latest orders opened or sold short tells theirs,
/// and a stock of multiplier 1 gets that one. Anything else must still stand in the folder's positions with
/// the same volume and cost, and gets the multiplier of its instrument. Fails with kPaperBadRequest and names
/// account, instrument and the ways out; the book's change is then the caller's to take back.
[[nodiscard]] utils::KNError reviewBook(CPaperBook& book, const IQuoteSource& quotes,
                                        const std::vector<CAccountEntry>& accounts);

} // namespace desk
