#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBook.h"
#include "orderservice/base/KNError.h"

#include <optional>
#include <string>

namespace desk {

/// Whether the account's funds in the folder are a valid initial amount.
bool hasSoundFunds(const CAccountEntry& account);

/// Converts a position of the folder to a position of the book: paid in full or on margin, as if it had been
/// opened at its cost. Empty if the position is invalid.
std::optional<CPaperPosition> takeInPosition(const std::string& account, const CPositionEntry& entry,
                                             const CInstrumentEntry& instrument);

/// Takes over funds and positions of an account that is new to the book. A position whose instrument is
/// unknown is treated as stock. Fails with kPaperBadRequest if funds or positions are invalid, if the account
/// could never trade one of the positions, or if the positions need more margin than the account has funds.
/// After a failure the caller must roll the book's change back.
[[nodiscard]] utils::KNError takeInAccount(CPaperBook& book, const IQuoteSource& quotes,
                                           const CAccountEntry& account);

} // namespace desk
