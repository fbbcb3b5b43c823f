#include "orderservice/check/CodeLookup.h"

#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/TradingRules.h"

#include <QStringBuilder>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace TC {
namespace {

using knservice::StockTypeCenter;

constexpr int kMarketLength = 2;

/// A market as both string types that the host's services need. Each market is created once.
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

/// Converts a code to UTF-8. Codes normally have only ASCII characters, which are copied one by one without a
/// temporary buffer.
std::string narrow(const QString& code) {
    std::string text(static_cast<std::size_t>(code.size()), '\0');
    const auto isAscii = [](QChar letter) { return letter.unicode() < 0x80; };
    if (!std::all_of(code.begin(), code.end(), isAscii)) return code.toStdString();
    std::transform(code.begin(), code.end(), text.begin(), [](QChar letter) { return letter.toLatin1(); });
    return text;
}

bool isTradable(const std::string& market, const QString& code) {
    return StockTypeCenter::isTypedStock(knservice::kTypeTradableStock, market, narrow(code));
}

bool resolveOnMarket(QString& code, const CMarket& market, EKeyJoin join) {
    QString full = market.m_name % code; // one allocation: this runs for every row of a basket
    const bool isKnown = hostCall<&CExchangeClient::hasStock>(
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
    if (!hostCall<&CExchangeClient::hasStock>(upper) ||
        !isTradable(code.left(kMarketLength).toUpper().toStdString(), code.mid(kMarketLength))) {
        return false;
    }
    code = upper;
    return true;
}

} // namespace TC
