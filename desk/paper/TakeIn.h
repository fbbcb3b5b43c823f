#pragma once

#include "base/KNError.h"
#include "desk/config/DeskConfig.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBook.h"

namespace desk {

/// Takes funds and positions of an account that is new to the book. A position of a derivative holds its
/// margin as if it had been opened at its cost; one whose instrument is not known counts as stock. Fails with
/// kPaperBadRequest where they make no sense; the book's change is then the caller's to take back.
[[nodiscard]] utils::KNError takeInAccount(CPaperBook& book, const IQuoteSource& quotes,
                                           const CAccountEntry& account);

} // namespace desk
