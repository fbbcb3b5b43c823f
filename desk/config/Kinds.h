#pragma once

#include "desk/config/DeskConfig.h"

#include <string>

/// Which instruments belong to which accounts and families.
namespace desk {

/// Whether orders for accounts of that kind may name such instruments.
bool tradesKind(TC::EQDBrokerType broker, EInstrumentKind kind);
/// Whether accounts of that kind may have positions in such instruments. Those that nothing could ever trade
/// are left out, such as stocks to lock and shares of the share-transfer market: they would stand in the
/// books for good.
bool holdsKind(TC::EQDBrokerType broker, EInstrumentKind kind);
/// Whether positions in such instruments may be short.
bool canBeShort(EInstrumentKind kind);

/// The market word that goes before the codes of a kind, which checks put there; empty: any.
std::string marketOfKind(EInstrumentKind kind);
/// The kind that instruments of that market have unless the folder says otherwise.
EInstrumentKind kindOfMarket(const std::string& market);

} // namespace desk
