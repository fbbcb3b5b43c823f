#pragma once

#include "desk/config/DeskConfig.h"

#include <string>

/// Rules about which instruments belong to which kinds of accounts.
namespace desk {

/// Whether orders for accounts of this kind may name instruments of this kind.
bool tradesKind(TC::EQDBrokerType broker, EInstrumentKind kind);
/// Whether accounts of this kind may have positions in instruments of this kind. False if orders for such
/// instruments are never filled: the positions would stay in the books forever. Examples are the stocks that
/// option accounts lock and shares of the share-transfer market.
bool holdsKind(TC::EQDBrokerType broker, EInstrumentKind kind);
/// Whether positions in instruments of this kind may be short.
bool canBeShort(EInstrumentKind kind);

/// The market word that checks put before the codes of this kind; empty: any market.
std::string marketOfKind(EInstrumentKind kind);
/// The default kind of instruments of this market, used if the folder does not set another.
EInstrumentKind kindOfMarket(const std::string& market);

/// Whether an order's line may name the stock by its bare code.
bool tradesUnderItsCode(const CInstrumentEntry& entry);
/// Whether the stock has a type that baskets take.
bool isBasketStock(const CInstrumentEntry& stock);

} // namespace desk
