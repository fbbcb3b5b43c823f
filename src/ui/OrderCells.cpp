#include "orderservice/ui/OrderCells.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/ui/HostFacts.h"
#include "orderservice/ui/TradeWords.h"

#include <cmath>

namespace TC {
namespace {

/// The price if it is set. The user must see a specified price of 0 or below: the order is sent with it.
std::optional<double> specifiedPriceOf(double price) {
    if (!std::isfinite(price) || isInvalidPrice(price)) return std::nullopt;
    return price;
}

/// The price if it is above 0.
std::optional<double> priceOf(double price) {
    return price >= kPriceTolerance ? specifiedPriceOf(price) : std::nullopt;
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

bool isMarket(EPriceType type, CHostFacts& host) {
    bool isMarket = false;
    if (!isUnset(type) && !isSpecified(type)) host.read([&] { isMarket = knservice::isMarketPrice(type); });
    return isMarket;
}

std::optional<double> quotedPriceOf(const CCodeOrderParam& record, const CPriceData& quote, bool isMarketType,
                                    CHostFacts& host) {
    std::optional<double> price;
    if (!isUnset(record.m_ePriceType) && !isMarketType) {
        host.read([&] {
            price = priceOf(hostCall<&CPriceData::getOriginPrice>.on(quote, record.m_ePriceType,
                                                                     record.m_eOperationType));
        });
    }
    return price ? price : priceOf(quote.m_dLastPrice);
}

void fillPrices(COrderCells& cells, const CCodeOrderParam& record, CHostFacts& host,
                const CPriceDataPtr& quote) {
    if (isSpecified(record.m_ePriceType)) {
        cells.m_price = cells.m_basePrice = specifiedPriceOf(record.m_dPrice);
        return;
    }
    const bool isMarketType = isMarket(record.m_ePriceType, host);
    if (quote) cells.m_basePrice = quotedPriceOf(record, *quote, isMarketType, host);
    cells.m_bNeedsQuote = !cells.m_basePrice;
    if (isUnset(record.m_ePriceType)) {
        cells.m_price = specifiedPriceOf(record.m_dPrice);
        return;
    }
    if (!isMarketType) cells.m_price = priceOf(record.m_dPrice);
    if (cells.m_price) return;
    host.read([&] {
        cells.m_strPriceWord = knPriceTypeToString(record.m_ePriceType, record.m_stock.m_strCode, false);
    });
}

void fillAccount(COrderCells& cells, const CCodeOrderParam& record, CHostFacts& host) {
    if (!record.m_account) return;
    const CAccountFacts& account = host.account(record);
    cells.m_strProduct = account.m_product.m_strName;
    cells.m_strAccount = account.m_product.m_strAccountName;
    if (cells.m_strAccount.isEmpty()) cells.m_strAccount = QString::fromStdString(record.m_account->getKey());
    if (!account.m_data) return;
    host.read([&] {
        const int volume = hostCall<&knservice::CAccountData::getCanOrderVolume>.on(*account.m_data, record);
        if (!isUnset(volume)) cells.m_available = volume;
    });
}

} // namespace

std::optional<double> quantityOf(const CCodeOrderParam& record) {
    if (!isInvalidPrice(record.m_dQuantity) && std::isfinite(record.m_dQuantity)) return record.m_dQuantity;
    if (isUnset(record.m_nVolume)) return std::nullopt;
    return record.m_nVolume;
}

COrderCells cellsOf(const CCodeOrderParam& record, EQdTraderType traderType, CHostFacts& host,
                    const CPriceDataPtr& quote) {
    COrderCells cells;
    cells.m_volume = quantityOf(record);
    fillAccount(cells, record, host);
    host.read([&] { cells.m_strTradeType = tradeWord(record.m_eOperationType, traderType); });
    cells.m_bMoney = host.repaysMoney(record);
    if (cells.m_bMoney) {
        cells.m_amount = cells.m_volume; // money has no price
        return cells;
    }
    if (!hasAmount(record.m_eOperationType)) return cells;
    fillPrices(cells, record, host, quote);
    const std::optional<double> price = cells.m_price ? cells.m_price : cells.m_basePrice;
    const std::optional<CMoneyRule>& rule = host.instrument(record).m_moneyRule;
    if (cells.m_volume && price && rule) cells.m_amount = rule->money(*cells.m_volume, *price);
    return cells;
}

} // namespace TC
