#include "check/CodeLookup.h"

#include "platform/ExchangeClient.h"
#include "platform/InstrumentTypes.h"
#include "platform/TradingRules.h"

namespace TC {
namespace {

using knservice::StockTypeCenter;

constexpr int kFullCodeLength = 8; // two letters of market, six digits
constexpr int kMarketLength = 2;

bool isTradable(const QString& market, const QString& code) {
    return StockTypeCenter::isTypedStock(knservice::kTypeTradableStock, market.toStdString(),
                                         code.toStdString());
}

bool resolveOnMarket(QString& code, const QString& market, EKeyJoin join) {
    const QString key = join == EKeyJoin::StockKey ? qdStockKey(market, code) : market + code;
    if (!CExchangeClient::instance().hasStock(key) || !isTradable(market, code)) return false;
    code = market + code;
    return true;
}

} // namespace

bool resolveStockCode(QString& code, EKeyJoin join, EFullCode fullCode) {
    if (resolveOnMarket(code, QStringLiteral("SH"), join) ||
        resolveOnMarket(code, QStringLiteral("SZ"), join)) {
        return true;
    }
    if (fullCode == EFullCode::Refused || code.size() != kFullCodeLength) return false;
    const QString upper = code.toUpper();
    if (!CExchangeClient::instance().hasStock(upper) ||
        !isTradable(code.left(kMarketLength).toUpper(), code.mid(kMarketLength))) {
        return false;
    }
    code = upper;
    return true;
}

} // namespace TC
