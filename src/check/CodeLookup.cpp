#include "orderservice/check/CodeLookup.h"

#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/TradingRules.h"

#include <QStringBuilder>

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
    constexpr unsigned kFirstBeyondAscii = 0x80;
    std::string text(static_cast<std::size_t>(code.size()), '\0');
    unsigned all = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned letter = code.at(static_cast<int>(i)).unicode();
        text[i] = static_cast<char>(letter);
        all |= letter;
    }
    return all < kFirstBeyondAscii ? text : code.toStdString();
}

bool isTradable(const std::string& market, const QString& code) {
    return StockTypeCenter::isTypedStock(knservice::kTypeTradableStock, market, narrow(code));
}

/// Looks the code up on one market. `full` is scratch space for the code with the market in front: all
/// markets use the same one, because this runs for every order and for every row of a basket.
bool resolveOnMarket(QString& code, const CMarket& market, EKeyJoin join, QString& full) {
    if (full.isEmpty()) {
        full = market.m_name % code;
    } else {
        full.replace(0, kMarketLength, market.m_name);
    }
    const bool isKnown = hostCall<&CExchangeClient::hasStock>(
        join == EKeyJoin::StockKey ? qdStockKey(market.m_name, code) : full);
    if (!isKnown || !isTradable(market.m_strName, code)) return false;
    code = std::move(full);
    return true;
}

} // namespace

bool resolveStockCode(QString& code, EKeyJoin join, EFullCode fullCode) {
    QString full;
    if (resolveOnMarket(code, shanghai(), join, full) || resolveOnMarket(code, shenzhen(), join, full))
        return true;
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
