#include "orderservice/check/InstrumentSteps.h"

#include "orderservice/base/Clock.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

#include <cmath>
#include <utility>

namespace TC {
namespace {

constexpr int kQuoteRetries = 2;
constexpr double kQuoteRetrySeconds = 1.0;

void clearUnusableLimit(double& limit, bool& isOn) {
    if (std::isfinite(limit)) return;
    limit = kUnsetDouble;
    isOn = false;
}

/// False if the amount is missing. An amount whose whole part is the not-set int is treated as missing too.
/// Larger amounts are allowed, because only the volume that they buy must fit an int.
bool isAmountUsable(double amount) {
    return !isInvalidPrice(amount) && std::trunc(amount) != static_cast<double>(kUnsetInt);
}

/// The price that converts an amount into a volume: the order's specified price, or otherwise a calculation
/// price that is read again.
double priceOfAmount(const CInstrumentRun& run) {
    if (run.setting.m_ePriceType != EPriceType::Specified)
        return calcPriceOf(run.priceData, run.setting.m_ePriceType, run.op, 0);
    return isInvalidPrice(run.calcPrice) ? fallbackPriceOf(run.priceData) : run.calcPrice;
}

void takeStock(const CInstrumentDetail& detail, CStockInfo& stock) {
    stock.m_strMarket = detail.m_strMarket;
    stock.m_strCode = detail.m_strCode;
    stock.m_strName = detail.m_strName;
    stock.m_strProductId = detail.m_strProductId;
}

} // namespace

void clearUnusableLimits(COrderSetting& setting) {
    clearUnusableLimit(setting.m_dFirstLimit, setting.m_bFirstLimitOn);
    clearUnusableLimit(setting.m_dSecondLimit, setting.m_bSecondLimitOn);
}

boost::shared_ptr<CQuoteRequest> requestQuotes(const QString& code) {
    return CQuoteRequest::makeRequest(code, {}, ESubscribeType::Plain);
}

void loadInstrument(CInstrumentRun& run) {
    run.quoteRequest = requestQuotes(run.code);
    run.detail = hostCall<&CExchangeClient::getCodeInfo>(run.code);
    if (run.detail) {
        takeStock(*run.detail, run.record.m_stock);
    } else {
        run.record.m_stock = CStockInfo();
    }
    startRecord(run, run.op);
}

void startRecord(CInstrumentRun& run, EOperationType op) {
    run.record.m_eOperationType = op;
    if (const CUserConfig* user = getUserConfig())
        run.record.m_strUserId = hostCall<&CUserConfig::getUserName>.on(*user);
}

double originPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op) {
    return quote ? finiteOrUnset(hostCall<&CPriceData::getOriginPrice>.on(*quote, priceType, op))
                 : kUnsetDouble;
}

double calcPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op, int orderType) {
    return quote ? finiteOrUnset(
                       hostCall<&CPriceData::getPriceForCalc>.on(*quote, priceType, op, orderType, {}))
                 : kUnsetDouble;
}

double orderPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op, int orderType) {
    return quote ? finiteOrUnset(
                       hostCall<&CPriceData::getPriceForOrder>.on(*quote, priceType, op, orderType, {}))
                 : kUnsetDouble;
}

double fallbackPriceOf(const CPriceDataPtr& quote) {
    return quote ? finiteOrUnset(quote->m_dFallbackPrice) : kUnsetDouble;
}

bool isQuoteUsable(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op) {
    if (!quote) return false;
    return priceType == EPriceType::NoQuote || priceType == EPriceType::Specified ||
           !isInvalidPrice(originPriceOf(quote, priceType, op));
}

CPriceDataPtr waitForQuote(const QString& stockKey, EPriceType priceType, EOperationType op,
                           EQuoteWait rule) {
    CPriceDataPtr quote = hostCall<&CQuoteClient::getStockPrice>(stockKey);
    if (priceType == EPriceType::Specified && rule == EQuoteWait::UnlessSpecified) return quote;
    for (int retry = 0; retry < kQuoteRetries && !isQuoteUsable(quote, priceType, op); ++retry) {
        utils::sleep(kQuoteRetrySeconds);
        quote = hostCall<&CQuoteClient::getStockPrice>(stockKey);
    }
    return quote;
}

bool isPriceGiven(double price) {
    return price != kUnsetDouble && std::isfinite(price) && std::fabs(price) > kPriceTolerance;
}

bool isSuspended(const CInstrumentRun& run) {
    const CPriceDataPtr& quote = run.priceData;
    return quote && isZero(quote->m_dDayFigure1) && isZero(quote->m_dDayFigure2) && quote->m_nDayCount == 0 &&
           run.setting.m_ePriceType != EPriceType::Specified;
}

int volumeForMoney(const CInstrumentRun& run, double amount, double fixedPrice) {
    const double money = finiteOrUnset(amount);
    const double price = priceOfAmount(run);
    if (!isAmountUsable(money) || isInvalidPrice(price) || isZero(price)) return kUnsetInt;
    return truncateToInt(money / (isInvalidPrice(fixedPrice) ? price : fixedPrice));
}

int roundToUnit(const CInstrumentRun& run, int volume) {
    return isUnset(volume) ? volume : volume - volume % tradingUnit(run.stock());
}

void stampRecord(const CInstrumentRun& run, EOperationType op, const CAccountInfoPtr& account, int volume,
                 EPositionType positionType, CCodeOrderParam& record) {
    orderSettingToParam(run.setting, record, op, volume, run.orderPrice, run.priceData);
    fixTimeRange(record);
    record.m_account = account;
    record.m_nVolume = volume;
    record.m_eHedgeFlag = EHedge_Flag_Type::Speculation;
    record.m_ePositionType = positionType;
    record.m_stock = run.stock();
}

} // namespace TC
