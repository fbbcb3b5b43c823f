#pragma once

#include "desk/paper/PaperBook.h"

#include <string>

/// How the paper broker trades. Each function changes the book within the caller's change. None fails.
namespace desk {

/// Fills the order from the volumes that the instrument's quote still offers: level by level, each at its own
/// price, up to the order's limit. Announces the new state if it changed. If the credit is too small for a
/// better price, the rest of the order is cancelled.
void match(CPaperBook& book, CPaperOrder& order);

/// Cancels an open order, releases what it holds, and announces it.
void cancel(CPaperBook& book, CPaperOrder& order, const std::string& reason);

} // namespace desk
