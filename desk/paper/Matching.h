#pragma once

#include "desk/paper/PaperBook.h"

#include <string>

/// How the paper broker trades: steps on the book, each within a change. None fails.
namespace desk {

/// Fills the order against what the instrument's quote still offers, level by level at the level's price, up
/// to its limit, and announces the new state where it changed. What a better price leaves without credit is
/// cancelled.
void match(CPaperBook& book, CPaperOrder& order);

/// Ends an open order, gives back what it holds, and announces it.
void cancel(CPaperBook& book, CPaperOrder& order, const std::string& reason);

} // namespace desk
