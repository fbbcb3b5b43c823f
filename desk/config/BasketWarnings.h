#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/TomlSection.h"

#include <string>

/// Warnings about the tables of desk.toml that order lines name.
namespace desk {

/// Warns about a basket that order lines cannot name as intended, or that has rows with and without a weight.
/// `section` is the basket's table.
void warnOfBasket(const CTomlSection& section, const std::string& name, const TC::CBasketSetting& basket);

/// Warns about a row that the order service skips, whose orders the broker rejects, or whose price has no
/// effect. `basket` has the rows before it.
void warnOfBasketRow(const CTomlSection& section, const TC::CBasketSetting& basket,
                     const TC::CBasketStockData& row, const CInstrumentEntry& stock);

/// Warns about an account that lines of orders or cancels cannot name.
void warnOfAccountKey(const CTomlSection& section, const std::string& key);

/// Warns if function calls know another account of the kind by the same text. `others`: the accounts before
/// it.
void warnOfDisplayId(const CTomlSection& section, const CAccountEntry& account,
                     const std::vector<CAccountEntry>& others);

/// Warns about a portfolio that clients can only name in UTF-8.
void warnOfPortfolioId(const CTomlSection& section, const std::string& id);

} // namespace desk
