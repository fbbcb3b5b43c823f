#pragma once

#include "base/KNError.h"
#include "desk/config/DeskConfig.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBook.h"

#include <optional>
#include <string>

namespace desk {

/// Whether the folder's funds of an account are an amount that it may begin with.
bool hasSoundFunds(const CAccountEntry& account);

/// A position of the folder as the book keeps it: paid, or on a margin of its cost, as if it had been opened
/// at its cost. Empty where it makes no sense.
std::optional<CPaperPosition> takeInPosition(const std::string& account, const CPositionEntry& entry,
                                             const CInstrumentEntry& instrument);

/// Takes funds and positions of an account that is new to the book. A position whose instrument is not known
/// counts as stock. Fails with kPaperBadRequest where funds or positions make no sense, where nothing could
/// ever trade a position on the account, and where the positions hold more margin than the account has funds;
/// the book's change is then the caller's to take back.
[[nodiscard]] utils::KNError takeInAccount(CPaperBook& book, const IQuoteSource& quotes,
                                           const CAccountEntry& account);

} // namespace desk
