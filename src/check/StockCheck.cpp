// The stock family: buying and selling, and the fund operations that share its course.
#include "base/Text.h"
#include "check/CheckFrame.h"
#include "check/Reports.h"
#include "platform/ExchangeClient.h"
#include "platform/InstrumentTypes.h"
#include "platform/TradingRules.h"

#include <cmath>

namespace TC {
namespace {

using knservice::StockTypeCenter;

constexpr int kFullCodeLength = 8; // two letters of market, six digits
constexpr int kMarketLength = 2;

/// Order numbers of the fund operations, whose records carry a quantity beside the volume.
constexpr int kFundPlainFirst = 86;
constexpr int kFundPricedFirst = 90; // 90 and 91 go out at a price of 1 whatever the setting says
constexpr int kFundPricedLast = 91;
constexpr int kFundLast = 92;

/// What one unit of the par-priced instruments on SH costs.
constexpr double kParPrice = 100.0;

bool isTradable(const QString& market, const QString& code) {
    return StockTypeCenter::isTypedStock(knservice::kTypeTradableStock, market.toStdString(),
                                         code.toStdString());
}

bool resolveOnMarket(CCheckRun& run, const QString& market) {
    if (!CExchangeClient::instance().hasStock(qdStockKey(market, run.code)) ||
        !isTradable(market, run.code)) {
        return false;
    }
    run.code = market + run.code;
    return true;
}

bool resolveStockCode(CCheckRun& run) {
    if (resolveOnMarket(run, QStringLiteral("SH")) || resolveOnMarket(run, QStringLiteral("SZ"))) return true;
    const QString fullCode = run.code.toUpper();
    if (run.code.size() == kFullCodeLength && CExchangeClient::instance().hasStock(fullCode) &&
        isTradable(run.code.left(kMarketLength).toUpper(), run.code.mid(kMarketLength))) {
        run.code = fullCode;
        return true;
    }
    return failCheck(run, QStringLiteral("[%1]　通道号: %2, 下单代码 [%3] 不合法!"), run.code);
}

bool checkStockPrice(const CCheckRun& run) {
    const EQDBrokerType broker = orderStrategyTradeTypeToBrokerType(run.strategy.m_eTradeType);
    if (run.service.isPriceTypeVailed(run.setting, run.order, run.priceData, run.op, broker, run.stock()))
        return true;
    const QString source = orderStrategyText(run.order.m_eStrategyType);
    if (run.code.isEmpty()) {
        showCheckFailure(utils::fillText(QStringLiteral("[%1]　证券代码为空, 无法下单!"), {source}));
    } else {
        const QString priceType = knPriceTypeToString(run.setting.m_ePriceType, run.stock().m_strCode, false);
        showCheckFailure(utils::fillText(QStringLiteral("[%1]　证券 [%2] %3无效, 无法下单!"),
                                         {source, run.code, priceType}));
    }
    return false;
}

/// The price that turns the amount into a volume: the order's own, or a calculation price read anew.
double priceOfAmount(const CCheckRun& run) {
    if (run.setting.m_ePriceType != EPriceType::Specified) {
        return run.priceData ? run.priceData->getPriceForCalc(run.setting.m_ePriceType, run.op, 0, {})
                             : kUnsetDouble;
    }
    return isInvalidPrice(run.calcPrice) && run.priceData ? run.priceData->m_dFallbackPrice : run.calcPrice;
}

/// True unless the amount is missing; an amount whose whole part is the not-set int counts as missing too.
/// Greater ones are good: what must fit an int is the volume that they buy.
bool isAmountUsable(double amount) {
    return !isInvalidPrice(amount) && std::trunc(amount) != static_cast<double>(kUnsetInt);
}

/// Shares are bought in whole units of the instrument; an unknown instrument has a unit of one share.
int tradingUnit(const CStockInfo& stock) {
    if (stock.m_strCode.empty()) return 1;
    const bool isStar =
        knservice::isTypedStock(knservice::kTypeStarMarket, stock.m_strMarket, stock.m_strCode, {});
    const int unit =
        isStar ? knservice::getUiMinUnit(stock.m_strMarket, stock.m_strCode, true)
               : knservice::getTradeMinUnit(stock.m_strMarket, stock.m_strCode, unsetEnum<EOperationType>());
    return unit > 0 ? unit : 1;
}

int volumeOfAmount(const CCheckRun& run) {
    const double amount = run.strategy.m_dAmount;
    const double price = priceOfAmount(run);
    if (!isAmountUsable(amount) || isInvalidPrice(price) || isZero(price)) return kUnsetInt;
    const CStockInfo& stock = run.stock();
    // The type is kept for SH alone, and the same six digits on SZ are another instrument with a real price.
    const bool isParPriced = stock.m_strMarket == "SH" &&
                             knservice::isTypedStock(knservice::kTypeParPriced, "SH", stock.m_strCode, {});
    const int volume = truncateToInt(amount / (isParPriced ? kParPrice : price));
    return isUnset(volume) ? volume : volume - volume % tradingUnit(stock);
}

void finishFundRecord(const CCheckRun& run, int volume, CCodeOrderParam& record) {
    const int number = run.order.m_nOrderType;
    if (number < kFundPlainFirst || number > kFundLast) return;
    record.m_nQuantityKind = kQuantityKindPlain;
    record.m_dQuantity = volume;
    if (number < kFundPricedFirst || number > kFundPricedLast) return;
    record.m_eOrderType = EOrderType::Plain;
    record.m_dPrice = 1.0;
    record.m_ePriceType = EPriceType::Specified;
}

constexpr CFamilyCheck kStockCheck = {
    EOrderStrategyTradeType::Stock,
    kTooManyLines,
    ESettingText::OrderKindThenPlain,
    resolveStockCode,
    checkStockPrice,
    volumeOfAmount,
    finishFundRecord,
};

} // namespace

bool COrderServiceBase::checkAndFillOrderStock(COrderParam order, COrderStrategyParam strategy,
                                               std::vector<CCodeOrderParam>& codes,
                                               std::map<std::string, double>& weights) const {
    CCheckRun run{kStockCheck, *this, order, strategy, codes, weights};
    return runFamilyCheck(run);
}

} // namespace TC
