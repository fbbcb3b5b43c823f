#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBook.h"
#include "orderservice/base/KNError.h"

#include <vector>

namespace desk {

/// Compares a loaded book with the folder in which it is to trade. Checks the positions, shares owed and
/// waiting orders that an account of the folder can still trade. Each must have the multiplier that its
/// instrument has now. A position must also have been paid (in full or on margin) as its kind of instrument
/// requires. Otherwise, closing it would book a gain or a loss that nobody made. Records of accounts and
/// instruments that are no longer in the folder are skipped, because the broker does not match them. Fails
/// with kPaperBadRequest; the text names the account, the instrument and the ways out.
[[nodiscard]] utils::KNError reviewBook(const CPaperBook& book, const IQuoteSource& quotes,
                                        const std::vector<CAccountEntry>& accounts);

} // namespace desk
