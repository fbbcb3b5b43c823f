#include "desk/config/Kinds.h"

#include "orderservice/base/FindRow.h"
#include "orderservice/platform/InstrumentTypes.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace desk {
namespace {

using EKind = EInstrumentKind;
using EBroker = TC::EQDBrokerType;

/// Returns several kinds as a bit set.
constexpr unsigned bits(std::initializer_list<EKind> kinds) {
    unsigned result = 0;
    for (const EKind kind : kinds)
        result |= 1U << static_cast<unsigned>(kind);
    return result;
}

struct CBrokerKinds {
    EBroker m_eBroker;
    unsigned m_nHeld;
    unsigned m_nNamedToo; ///< orders may name them, but the desk does not fill such orders
};

constexpr CBrokerKinds kBrokerKinds[] = {
    {EBroker::Stock, bits({EKind::Stock}), 0},
    {EBroker::Credit, bits({EKind::Stock}), 0},
    {EBroker::Future, bits({EKind::Future}), 0},
    {EBroker::FutureOption, bits({EKind::FutureOption}), 0},
    {EBroker::StockOption, bits({EKind::StockOption}), bits({EKind::Stock})},
    {EBroker::SGT, bits({EKind::Sgt}), 0},
    {EBroker::HGT, bits({EKind::Hgt}), 0},
    {EBroker::Neeq, 0, bits({EKind::Neeq, EKind::Stock})},
    {EBroker::Gold, bits({EKind::Gold}), 0},
};

struct CMarketWord {
    const char* m_pszMarket;
    EKind m_eKind;
};

constexpr CMarketWord kMarketWords[] = {
    {"SGT", EKind::Sgt}, {"HGT", EKind::Hgt}, {"NEEQ", EKind::Neeq}, {"GOLD", EKind::Gold}};

const CBrokerKinds* kindsOf(EBroker broker) {
    return utils::findRow(kBrokerKinds, [&](const CBrokerKinds& row) { return row.m_eBroker == broker; });
}

} // namespace

bool tradesKind(EBroker broker, EKind kind) {
    const CBrokerKinds* row = kindsOf(broker);
    return row != nullptr && ((row->m_nHeld | row->m_nNamedToo) & bits({kind})) != 0;
}

bool holdsKind(EBroker broker, EKind kind) {
    const CBrokerKinds* row = kindsOf(broker);
    return row != nullptr && (row->m_nHeld & bits({kind})) != 0;
}

bool canBeShort(EKind kind) {
    constexpr unsigned kShortKinds =
        bits({EKind::Future, EKind::FutureOption, EKind::StockOption, EKind::Gold});
    return (kShortKinds & bits({kind})) != 0;
}

std::string marketOfKind(EKind kind) {
    for (const CMarketWord& row : kMarketWords) {
        if (row.m_eKind == kind) return row.m_pszMarket;
    }
    return {};
}

EKind kindOfMarket(const std::string& market) {
    for (const CMarketWord& row : kMarketWords) {
        if (row.m_pszMarket == market) return row.m_eKind;
    }
    return EKind::Stock;
}

bool tradesUnderItsCode(const CInstrumentEntry& entry) {
    return entry.kind == EInstrumentKind::Stock && entry.types.count(knservice::kTypeTradableStock) > 0;
}

bool isBasketStock(const CInstrumentEntry& stock) {
    return std::any_of(std::begin(knservice::kBasketTypes), std::end(knservice::kBasketTypes),
                       [&](int type) { return stock.types.count(type) > 0; });
}

} // namespace desk
