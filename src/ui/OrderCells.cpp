#include "orderservice/ui/OrderCells.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/ui/TradeWords.h"

#include <cmath>

namespace TC {
namespace {

/// The price if it is a usable number.
std::optional<double> priceOf(double price) {
    if (!std::isfinite(price) || isInvalidPrice(price) || price < kPriceTolerance) return std::nullopt;
    return price;
}

bool isSpecified(EPriceType type) {
    return type == EPriceType::Specified || type == EPriceType::SpecifiedByRow;
}

/// Operations that move no money for a volume at a price.
bool hasAmount(EOperationType operation) {
    switch (operation) {
    case EOperationType::ExerciseFutureOption:
    case EOperationType::ReturnShares:
    case EOperationType::EndMoneyContract:
    case EOperationType::EndShareContract:
    case EOperationType::OptionExerciseCall:
    case EOperationType::OptionExercisePut:
    case EOperationType::OptionLock:
    case EOperationType::OptionUnlock:
        return false;
    default:
        return true;
    }
}

std::optional<double> basePriceOf(const CCodeOrderParam& record, const CPriceDataPtr& quote) {
    if (isSpecified(record.m_ePriceType)) return priceOf(record.m_dPrice);
    if (!quote) return std::nullopt;
    if (!isUnset(record.m_ePriceType) && !knservice::isMarketPrice(record.m_ePriceType)) {
        const double quoted =
            hostCall<&CPriceData::getOriginPrice>.on(*quote, record.m_ePriceType, record.m_eOperationType);
        if (const std::optional<double> price = priceOf(quoted)) return price;
    }
    return priceOf(quote->m_dLastPrice);
}

void fillPrice(COrderCells& cells, const CCodeOrderParam& record) {
    if (isUnset(record.m_ePriceType)) {
        cells.m_price = priceOf(record.m_dPrice);
        return;
    }
    if (!knservice::isMarketPrice(record.m_ePriceType)) cells.m_price = priceOf(record.m_dPrice);
    if (!cells.m_price && !isSpecified(record.m_ePriceType))
        cells.m_strPriceWord = knPriceTypeToString(record.m_ePriceType, record.m_stock.m_strCode, false);
}

} // namespace

QString stockKeyOf(const CCodeOrderParam& record) {
    if (record.m_stock.m_strCode.empty()) return {};
    return qdStockKey(QString::fromStdString(record.m_stock.m_strMarket),
                      QString::fromStdString(record.m_stock.m_strCode));
}

bool repaysMoney(const CCodeOrderParam& record) {
    return !isUnset(record.m_eOperationType) && isDirectRepay(record.m_eOperationType);
}

std::optional<double> quantityOf(const CCodeOrderParam& record) {
    if (!isInvalidPrice(record.m_dQuantity) && std::isfinite(record.m_dQuantity)) return record.m_dQuantity;
    if (isUnset(record.m_nVolume)) return std::nullopt;
    return record.m_nVolume;
}

CMoneyRule moneyRuleOf(const CInstrumentDetailPtr& detail, const CStockInfo& stock) {
    CMoneyRule rule;
    if (detail && std::isfinite(detail->m_dMultiplier) && detail->m_dMultiplier > 0)
        rule.m_dMultiplier = detail->m_dMultiplier;
    rule.m_bParPriced = stock.m_strMarket == "SH" &&
                        knservice::StockTypeCenter::isTypedStock(knservice::kTypeParPriced, stock.m_strMarket,
                                                                 stock.m_strCode);
    return rule;
}

COrderCells cellsOf(const CCodeOrderParam& record, EQdTraderType traderType, const CPriceDataPtr& quote,
                    const CInstrumentDetailPtr& detail) {
    COrderCells cells;
    cells.m_strTradeType = tradeWord(record.m_eOperationType, traderType);
    cells.m_bMoney = repaysMoney(record);
    cells.m_volume = quantityOf(record);
    if (cells.m_bMoney) {
        cells.m_amount = cells.m_volume; // money has no price
        return cells;
    }
    if (!hasAmount(record.m_eOperationType)) return cells;
    cells.m_basePrice = basePriceOf(record, quote);
    fillPrice(cells, record);
    const std::optional<double> price = cells.m_price ? cells.m_price : cells.m_basePrice;
    if (cells.m_volume && price)
        cells.m_amount = moneyRuleOf(detail, record.m_stock).money(*cells.m_volume, *price);
    return cells;
}

} // namespace TC
