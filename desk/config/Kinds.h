#pragma once

#include "desk/config/DeskConfig.h"

#include <string>

/// Which instruments belong to which accounts and families.
namespace desk {

/// Whether orders for accounts of that kind may name such instruments.
bool tradesKind(TC::EQDBrokerType broker, EInstrumentKind kind);
/// Whether accounts of that kind may have positions in such instruments: also those that trading brings in,
/// as an exercised option does.
bool holdsKind(TC::EQDBrokerType broker, EInstrumentKind kind);
/// Whether positions in such instruments may be short.
bool canBeShort(EInstrumentKind kind);

/// The market word that goes before the codes of a kind, which checks put there; empty: any.
std::string marketOfKind(EInstrumentKind kind);
/// The kind that instruments of that market have unless the folder says otherwise.
EInstrumentKind kindOfMarket(const std::string& market);

} // namespace desk
