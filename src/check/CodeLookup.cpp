#include "check/CodeLookup.h"

#include "platform/ExchangeClient.h"
#include "platform/InstrumentTypes.h"
#include "platform/TradingRules.h"

#include <QStringBuilder>

#include <string>
#include <utility>

namespace TC {
namespace {

using knservice::StockTypeCenter;

constexpr int kFullCodeLength = 8; // two letters of market, six digits
constexpr int kMarketLength = 2;

/// A market in both forms that the host's services ask for, made once.
struct CMarket {
    QString m_name;
    std::string m_strName;
};

const CMarket& shanghai() {
    static const CMarket market{QStringLiteral("SH"), "SH"};
    return market;
}

const CMarket& shenzhen() {
    static const CMarket market{QStringLiteral("SZ"), "SZ"};
    return market;
}

bool isTradable(const std::string& market, const QString& code) {
    return StockTypeCenter::isTypedStock(knservice::kTypeTradableStock, market, code.toStdString());
}

bool resolveOnMarket(QString& code, const CMarket& market, EKeyJoin join) {
    QString full = market.m_name % code; // one allocation: every row of a basket comes through here
    const bool isKnown = CExchangeClient::instance().hasStock(
        join == EKeyJoin::StockKey ? qdStockKey(market.m_name, code) : full);
    if (!isKnown || !isTradable(market.m_strName, code)) return false;
    code = std::move(full);
    return true;
}

} // namespace

bool resolveStockCode(QString& code, EKeyJoin join, EFullCode fullCode) {
    if (resolveOnMarket(code, shanghai(), join) || resolveOnMarket(code, shenzhen(), join)) return true;
    if (fullCode == EFullCode::Refused || code.size() != kFullCodeLength) return false;
    const QString upper = code.toUpper();
    if (!CExchangeClient::instance().hasStock(upper) ||
        !isTradable(code.left(kMarketLength).toUpper().toStdString(), code.mid(kMarketLength))) {
        return false;
    }
    code = upper;
    return true;
}

} // namespace TC
