#pragma once

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/records/Families.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"

#include <boost/make_shared.hpp>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

/// The checks of all product families in one form. Each has an example order number and instrument.
namespace families {

using CCheck = bool (*)(const TC::COrderServiceBase&, TC::COrderParam, const TC::COrderStrategyParam&,
                        std::vector<TC::CCodeOrderParam>&, std::map<std::string, double>&);

template<auto kCheck>
bool checkBy(const TC::COrderServiceBase& service, TC::COrderParam order,
             const TC::COrderStrategyParam& strategy, std::vector<TC::CCodeOrderParam>& codes,
             std::map<std::string, double>& weights) {
    return (service.*kCheck)(order, strategy, codes, weights);
}

struct CFamilyUnderTest {
    const char* name;
    TC::EOrderStrategyTradeType family;
    CCheck check;
    int number;         ///< an order number that opens or buys
    const char* list;   ///< list of its instruments; null: its instruments are stocks
    const char* market; ///< prefix of the code in the key; empty: the key is the code
    const char* code;   ///< the code as an order contains it

    std::string key() const { return std::string(market) + code; }
};

using EFamily = TC::EOrderStrategyTradeType;
using CBase = TC::COrderServiceBase;

inline constexpr CFamilyUnderTest kFamilies[] = {
    {"Stock", EFamily::Stock, checkBy<&CBase::checkAndFillOrderStock>, 23, nullptr, "SH", "600000"},
    {"Future", EFamily::Future, checkBy<&CBase::checkAndFillOrderSpec>, 0, "future", "", "IF2601"},
    {"Basket", EFamily::Basket, checkBy<&CBase::checkAndFillOrderCompose>, 25, nullptr, "SH", "600000"},
    {"Credit", EFamily::Credit, checkBy<&CBase::checkAndFillOrderCredit>, 23, nullptr, "SH", "600000"},
    {"Option", EFamily::StockOption, checkBy<&CBase::checkAndFillOrderOption>, 48, "option", "", "10000001"},
    {"FutureOption", EFamily::FutureOption, checkBy<&CBase::checkAndFillOrderFutureOption>, 0,
     "future option", "", "m2605-C-3000"},
    {"FutureBasket", EFamily::FutureBasket, checkBy<&CBase::checkAndFillOrderCompose>, 25, nullptr, "SH",
     "600000"},
    {"Sgt", EFamily::SGT, checkBy<&CBase::checkAndFillOrderSGT>, 23, "sgt", "SGT", "00700"},
    {"Hgt", EFamily::HGT, checkBy<&CBase::checkAndFillOrderHGT>, 23, "hgt", "HGT", "00005"},
    {"Neeq", EFamily::Neeq, checkBy<&CBase::checkAndFillOrderNeeq>, 66, "neeq", "NEEQ", "430003"},
    {"Gold", EFamily::Gold, checkBy<&CBase::checkAndFillOrderGold>, 0, "gold", "GOLD", "AUTD"},
};

inline const CFamilyUnderTest& find(TC::EOrderStrategyTradeType family) {
    for (const CFamilyUnderTest& row : kFamilies) {
        if (row.family == family) return row;
    }
    throw std::runtime_error("no family of the trade type " + std::to_string(static_cast<int>(family)));
}

/// Adds an instrument of the family to the host. It is tradable at this price; stocks are allowed in baskets.
inline void addInstrument(CFakeHost& host, const CFamilyUnderTest& family, const std::string& code,
                          double price) {
    const std::string key = family.market + code;
    if (family.list == nullptr) {
        host.addStock(family.market, code, price);
        host.types.types.insert({knservice::kBasketTypes[0], key});
    } else {
        const auto detail = boost::make_shared<TC::CInstrumentDetail>();
        detail->m_strMarket = family.market;
        detail->m_strCode = code;
        host.exchange.others[QString::fromStdString(key)] = detail;
        host.exchange.lists.insert({family.list, QString::fromStdString(key)});
        host.setPrice(QString::fromStdString(key), price);
        host.types.units[key] = 100;
    }
    host.quotes.quotes.at(QString::fromStdString(key))->m_nDayCount = 1;
}

/// Adds the group "G" with the accounts A1 and A2 under the family's broker kind, as the host has it for
/// stocks.
inline void addGroup(CFakeHost& host, const CFamilyUnderTest& family) {
    const TC::EQDBrokerType broker = host.rules.orderStrategyTradeTypeToBrokerType(family.family);
    if (host.user.groups.count({broker, "G"}) == 0)
        host.user.addGroup(broker, "G", {{"A1", 0.6}, {"A2", 0.4}});
}

/// A strategy of the family for the accounts of the group "G". Its setting has this price type.
inline CStrategyBuilder strategyOf(const CFamilyUnderTest& family, TC::EPriceType priceType) {
    return CStrategyBuilder().family(family.family).set([&](auto& s) {
        s.setting(TC::findFamily(family.family)->m_eSlot).m_ePriceType = priceType;
    });
}

} // namespace families
