#include "desk/config/BasketWarnings.h"

#include "desk/config/Kinds.h"
#include "desk/config/SettingWarnings.h"

#include <QString>

#include <algorithm>

namespace desk {
namespace {

/// What a line of an order file removes from a name, or where it ends a name.
constexpr const char* kNotInNames = " ,\t\r\n";

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x80; });
}

} // namespace

void warnOfBasket(const CTomlSection& section, const std::string& name, const TC::CBasketSetting& basket) {
    if (basket.m_rows.empty())
        return section.warnAt("rows", "there are no rows; orders that name the basket are refused");
    if (QString::fromStdString(name).toLower() == QLatin1String("all"))
        section.warnAt("name", "order 26 with the name \"all\" sells all positions, not this basket");
    if (name.find_first_of(kNotInNames) != std::string::npos)
        section.warnAt("name", "an order file cannot name a basket with a blank or a comma in its name");
    const auto hasWeight = [](const TC::CBasketStockData& row) { return row.m_dWeight > 0; };
    const bool isWeighted = std::any_of(basket.m_rows.begin(), basket.m_rows.end(), hasWeight);
    if (isWeighted && !std::all_of(basket.m_rows.begin(), basket.m_rows.end(), hasWeight))
        section.warnAt("rows",
                       "some rows have no weight; order 34 with an amount sells what is held of them");
}

void warnOfBasketRow(const CTomlSection& section, const TC::CBasketSetting& basket,
                     const TC::CBasketStockData& row, const CInstrumentEntry& stock) {
    if (!isBasketStock(stock))
        section.warnAt("code", "instrument \"" + stock.key() +
                                   "\" has no type that a basket can have; the row is left out");
    constexpr int kBuy = static_cast<int>(TC::EOperationType::Buy);
    constexpr int kSell = static_cast<int>(TC::EOperationType::Sell);
    if (row.m_eOperationType >= 0 && row.m_eOperationType != kBuy && row.m_eOperationType != kSell)
        section.warnAt("operation", "operation is " + std::to_string(row.m_eOperationType) +
                                        "; expected 18 to buy or 19 to sell");
    warnOfUnit(section, row.m_nVolume, stock);
    const bool hasVolume = !TC::isUnset(row.m_nVolume) && row.m_nVolume > 0;
    if (!hasVolume && !(row.m_dWeight > 0))
        section.warnAt("code", "instrument \"" + stock.key() +
                                   "\" has neither a volume nor a weight; the row is left out");
    if (section.has("price")) section.warnAt("price", "price has no effect: named baskets have no prices");
    const bool isThere = std::any_of(basket.m_rows.begin(), basket.m_rows.end(), [&](const auto& other) {
        return other.m_strMarket.toStdString() + other.m_strCode.toStdString() == stock.key();
    });
    if (isThere) section.warnAt("code", "instrument \"" + stock.key() + "\" is in the basket twice");
}

void warnOfAccountKey(const CTomlSection& section, const std::string& key) {
    if (key.find_first_of(" \t\r\n:;,") != std::string::npos)
        section.warnAt("key",
                       "order files cannot name an account with a blank, \":\", \";\" or \",\" in its key");
}

void warnOfDisplayId(const CTomlSection& section, const CAccountEntry& account,
                     const std::vector<CAccountEntry>& others) {
    const auto nameOf = [](const CAccountEntry& entry) {
        return entry.displayId.empty() ? entry.key : entry.displayId;
    };
    for (const CAccountEntry& other : others) {
        if (other.broker != account.broker || nameOf(other) != nameOf(account)) continue;
        return section.warnAt("display_id", "function calls for \"" + nameOf(account) +
                                                "\" trade on the account \"" + other.key + "\", not on \"" +
                                                account.key + "\"");
    }
}

void warnOfPortfolioId(const CTomlSection& section, const std::string& id) {
    if (!isAscii(id))
        section.warnAt("id",
                       "id is not ASCII; a client must name it in UTF-8, because it is not found in GBK");
}

} // namespace desk
