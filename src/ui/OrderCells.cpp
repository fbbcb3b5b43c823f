#include "orderservice/ui/OrderCells.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/ui/HostFacts.h"
#include "orderservice/ui/OrdersConfirmWidget.h"
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

/// Not set if the host has failed to answer.
std::optional<bool> isMarket(EPriceType type, CHostFacts& host) {
    std::optional<bool> isMarket;
    if (isUnset(type)) return false;
    (void)host.read([&] { isMarket = knservice::isMarketPrice(type); });
    return isMarket;
}

/// The quoted price of the price type. Only a type that is at the market, that is the latest price, or that
/// is not set has the last price instead: a first buy price that nobody quotes is not a price.
void fillQuotedPrice(COrderCells& cells, const CCodeOrderParam& record, const CPriceData& quote,
                     bool isMarketType, CHostFacts& host) {
    const EPriceType type = record.m_ePriceType;
    if (!isUnset(type) && !isMarketType) {
        const bool isRead = host.read([&] {
            cells.m_basePrice =
                priceOf(hostCall<&CPriceData::getOriginPrice>.on(quote, type, record.m_eOperationType));
        });
        if (!isRead) cells.m_unread.insert(COrdersConfirmWidget::BasePrice);
    }
    if (!cells.m_basePrice && (isUnset(type) || isMarketType || type == EPriceType::Latest))
        cells.m_basePrice = priceOf(quote.m_dLastPrice);
}

void fillPriceWord(COrderCells& cells, const CCodeOrderParam& record, CHostFacts& host) {
    const bool isRead = host.read([&] {
        cells.m_strPriceWord = knPriceTypeToString(record.m_ePriceType, record.m_stock.m_strCode, false);
    });
    if (!isRead) cells.m_unread.insert(COrdersConfirmWidget::Price);
}

void fillPrices(COrderCells& cells, const CCodeOrderParam& record, CHostFacts& host,
                const CPriceDataPtr& quote) {
    if (isSpecified(record.m_ePriceType)) {
        cells.m_price = cells.m_basePrice = specifiedPriceOf(record.m_dPrice);
        return;
    }
    const std::optional<bool> isMarketType = isMarket(record.m_ePriceType, host);
    if (!isMarketType) { // the record's number may be no price of this order
        cells.m_unread.insert(
            {COrdersConfirmWidget::BasePrice, COrdersConfirmWidget::Price, COrdersConfirmWidget::Amount});
        return fillPriceWord(cells, record, host);
    }
    if (quote) fillQuotedPrice(cells, record, *quote, *isMarketType, host);
    if (!cells.m_basePrice && host.instrument(record).m_bQuoteFailed)
        cells.m_unread.insert(COrdersConfirmWidget::BasePrice);
    cells.m_bNeedsQuote = !cells.m_basePrice && (!quote || cells.m_unread.empty());
    if (isUnset(record.m_ePriceType)) {
        cells.m_price = specifiedPriceOf(record.m_dPrice);
        return;
    }
    if (!*isMarketType) cells.m_price = priceOf(record.m_dPrice);
    if (!cells.m_price) fillPriceWord(cells, record, host);
}

void fillAccount(COrderCells& cells, const CCodeOrderParam& record, CHostFacts& host) {
    if (!record.m_account) return;
    const CAccountFacts& account = host.account(record);
    cells.m_strProduct = account.m_product.m_strName;
    cells.m_strAccount = account.m_product.m_strAccountName;
    if (cells.m_strAccount.isEmpty()) cells.m_strAccount = QString::fromStdString(record.m_account->getKey());
    if (account.m_bProductFailed)
        cells.m_unread.insert({COrdersConfirmWidget::Account, COrdersConfirmWidget::Product});
    bool isRead = !account.m_bDataFailed;
    if (account.m_data) {
        isRead = host.read([&] {
            const int volume =
                hostCall<&knservice::CAccountData::getCanOrderVolume>.on(*account.m_data, record);
            if (!isUnset(volume)) cells.m_available = volume;
        });
    }
    if (!isRead) cells.m_unread.insert(COrdersConfirmWidget::Available);
}

void fillAmount(COrderCells& cells, const CCodeOrderParam& record, CHostFacts& host) {
    const std::optional<double> price = cells.m_price ? cells.m_price : cells.m_basePrice;
    const std::optional<CMoneyRule> rule = host.moneyRule(record);
    if (cells.m_volume && price && rule) cells.m_amount = rule->money(*cells.m_volume, *price);
    if (host.instrument(record).m_bFailed)
        cells.m_unread.insert({COrdersConfirmWidget::MarketValue, COrdersConfirmWidget::Amount});
}

} // namespace

std::optional<double> quantityOf(const CCodeOrderParam& record) {
    if (!isInvalidPrice(record.m_dQuantity) && std::isfinite(record.m_dQuantity)) return record.m_dQuantity;
    if (isUnset(record.m_nVolume)) return std::nullopt;
    return record.m_nVolume;
}

COrderCells numbersOf(const CCodeOrderParam& record, CHostFacts& host, const CPriceDataPtr& quote) {
    COrderCells cells;
    cells.m_volume = quantityOf(record);
    cells.m_bMoney = host.repaysMoney(record);
    if (!cells.m_bMoney) { // a value that takes money for shares is wrong by a factor
        cells.m_unread.insert({COrdersConfirmWidget::Volume, COrdersConfirmWidget::MarketValue,
                               COrdersConfirmWidget::BasePrice, COrdersConfirmWidget::Price,
                               COrdersConfirmWidget::Amount});
        return cells;
    }
    if (*cells.m_bMoney) {
        cells.m_amount = cells.m_volume; // money has no price
        return cells;
    }
    if (!hasAmount(record.m_eOperationType)) return cells;
    fillPrices(cells, record, host, quote);
    fillAmount(cells, record, host);
    return cells;
}

COrderCells cellsOf(const CCodeOrderParam& record, EQdTraderType traderType, CHostFacts& host,
                    const CPriceDataPtr& quote) {
    COrderCells cells = numbersOf(record, host, quote);
    fillAccount(cells, record, host);
    if (!host.read([&] { cells.m_strTradeType = tradeWord(record.m_eOperationType, traderType); }))
        cells.m_unread.insert(COrdersConfirmWidget::TradeType);
    return cells;
}

} // namespace TC
