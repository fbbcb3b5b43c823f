#include "orderservice/check/CheckFrame.h"

#include "orderservice/base/Clock.h"
#include "orderservice/base/Text.h"
#include "orderservice/check/Reports.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

constexpr int kQuoteRetries = 2;
constexpr double kQuoteRetrySeconds = 1.0;

/// Copies the line's code, and the values that it sets, to the run. The line must have a code.
void takeLine(CCheckRun& run, const COrderSingleParam& line) {
    run.code = line.m_strCode;
    if (!isUnset(line.m_nOverFreqMode)) run.record.m_nOverFreqMode = line.m_nOverFreqMode;
    if (!isUnset(line.m_ePriceType)) run.setting.m_ePriceType = line.m_ePriceType;
}

/// For an algorithm order the text becomes the command's parameter text, so it is not read as a setting,
/// unless the family reads every text.
bool isSettingTextRead(ESettingText rule, EOrderType orderType) {
    return rule == ESettingText::Always || !knservice::DataHelper::isAlgoOrderType(orderType);
}

void takeSettingText(CCheckRun& run) {
    const COrderParam& order = run.order;
    const ESettingText rule = run.family.m_eSettingText;
    if (rule == ESettingText::OrderKindThenPlain) run.setting.m_eOrderType = order.m_eOrderType;
    if (!isSettingTextRead(rule, order.m_eOrderType)) return;
    orderSettingFromString(run.setting, QString::fromStdString(order.m_strOrderSetting));
}

QString sourceHead(const CCheckRun& run) {
    return QStringLiteral("[") + orderStrategyText(run.order.m_eStrategyType) + QStringLiteral("]　");
}

/// A limit that is not finite is treated as not set, whatever its source.
void takeFiniteLimit(double& limit, bool& isOn) {
    if (std::isfinite(limit)) return;
    limit = kUnsetDouble;
    isOn = false;
}

/// False if the amount is missing. An amount whose whole part is the not-set int is treated as missing too.
/// Larger amounts are allowed, because only the volume that they buy must fit an int.
bool isAmountUsable(double amount) {
    return !isInvalidPrice(amount) && std::trunc(amount) != static_cast<double>(kUnsetInt);
}

/// The price that converts the amount into a volume: the order's specified price, or otherwise a calculation
/// price that is read again.
double priceOfAmount(const CCheckRun& run) {
    if (run.setting.m_ePriceType != EPriceType::Specified)
        return calcPriceOf(run.priceData, run.setting.m_ePriceType, run.op, 0);
    return isInvalidPrice(run.calcPrice) ? fallbackPriceOf(run.priceData) : run.calcPrice;
}

void stampRecord(const CCheckRun& run, EOperationType op, const CAccountInfoPtr& account, int volume,
                 CCodeOrderParam& record) {
    orderSettingToParam(run.setting, record, op, volume, run.orderPrice, run.priceData);
    fixTimeRange(record);
    record.m_account = account;
    record.m_nVolume = volume;
    record.m_eHedgeFlag = EHedge_Flag_Type::Speculation;
    record.m_ePositionType = run.strategy.m_ePositionType;
    record.m_stock = run.stock();
    if (run.family.m_pfnFinishRecord != nullptr) run.family.m_pfnFinishRecord(run, volume, record);
}

} // namespace

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

bool failCheck(const CCheckRun& run, const QString& pattern, const QString& argument) {
    showCheckFailure(utils::fillText(pattern, {orderStrategyText(run.order.m_eStrategyType),
                                               QString::number(run.strategy.m_nChannel), argument}));
    return false;
}

QString preparedAccountKey(const COrderParam& order, const COrderStrategyParam& strategy) {
    if (strategy.m_nAccountMode != COrderStrategyParam::kTableMode) return strategy.m_strSelectedAccount;
    return order.m_orders.isEmpty() ? QString() : order.m_orders.first().m_strAccount;
}

bool failCode(const CCheckRun& run) {
    return failCheck(run, QStringLiteral("[%1]　通道号: %2, 下单代码 [%3] 不合法!"), run.code);
}

bool failPrice(const CCheckRun& run, const QString& pattern, const std::string& codeForWord) {
    const QString word = knPriceTypeToString(run.setting.m_ePriceType, codeForWord, false);
    showCheckFailure(
        utils::fillText(pattern, {orderStrategyText(run.order.m_eStrategyType), run.code, word}));
    return false;
}

bool checkPriceType(const CCheckRun& run) {
    const EQDBrokerType broker = orderStrategyTradeTypeToBrokerType(run.strategy.m_eTradeType);
    return run.service.isPriceTypeVailed(run.setting, run.order, run.priceData, run.op, broker, run.stock());
}

bool checkStockPrice(const CCheckRun& run) {
    return checkPriceType(run) || failPrice(run, QString::fromUtf8(kBadStockPrice), run.stock().m_strCode);
}

int volumeOfAmount(const CCheckRun& run, double fixedPrice) {
    const double amount = finiteOrUnset(run.strategy.m_dAmount);
    const double price = priceOfAmount(run);
    if (!isAmountUsable(amount) || isInvalidPrice(price) || isZero(price)) return kUnsetInt;
    return truncateToInt(amount / (isInvalidPrice(fixedPrice) ? price : fixedPrice));
}

int plainVolumeOfAmount(const CCheckRun& run) {
    return volumeOfAmount(run);
}

int roundToUnit(const CCheckRun& run, int volume) {
    return isUnset(volume) ? volume : volume - volume % tradingUnit(run.stock());
}

bool checkOrderNumber(const CCheckRun& run) {
    const CFamily* family = findFamily(run.family.m_eTradeType);
    if (family != nullptr && family->accepts(run.order.m_nOrderType)) return true;
    return failCheck(run, QString::fromUtf8(kBadOrderNumber));
}

bool checkLineCount(const CCheckRun& run) {
    if (run.order.m_orders.size() <= 1) return true;
    return failCheck(run, QString::fromUtf8(run.family.m_pszTooManyLines));
}

bool resolveAccounts(CCheckRun& run) {
    QString accountKey = preparedAccountKey(run.order, run.strategy);
    return run.service.checkAccountKey(run.order, run.strategy, accountKey, run.accounts, run.ratios,
                                       run.weights, true);
}

void takeSetting(CCheckRun& run) {
    const COrderParam& order = run.order;
    run.op = orderTypeToOperationType(order.m_nOrderType);
    run.setting = run.strategy.setting(findFamily(run.family.m_eTradeType)->m_eSlot);
    if (run.line() != nullptr && run.family.m_pfnLineIntoSetting != nullptr)
        run.family.m_pfnLineIntoSetting(*run.line(), run.setting);
    if (!order.m_strOrderSetting.empty()) takeSettingText(run);
    takeFiniteLimit(run.setting.m_dFirstLimit, run.setting.m_bFirstLimitOn);
    takeFiniteLimit(run.setting.m_dSecondLimit, run.setting.m_bSecondLimitOn);
}

bool resolveCode(CCheckRun& run) {
    run.code = run.strategy.m_strCode;
    const COrderSingleParam* line = run.line();
    if (line != nullptr && !line->m_strCode.isEmpty()) {
        takeLine(run, *line);
        if (run.family.m_pfnResolveCode != nullptr && !run.family.m_pfnResolveCode(run)) return false;
    }
    return run.family.m_pfnCheckCode == nullptr || run.family.m_pfnCheckCode(run);
}

void loadInstrument(CCheckRun& run) {
    run.quoteRequest = run.service.prepareCode(run.code, run.accounts);
    run.detail = hostCall<&CExchangeClient::getCodeInfo>(run.code);
    CStockInfo stock;
    if (run.detail) {
        stock = {run.detail->m_strMarket, run.detail->m_strCode, run.detail->m_strName,
                 run.detail->m_strProductId};
    }
    startRecord(run, run.op, std::move(stock));
}

void startRecord(CCheckRun& run, EOperationType op, CStockInfo stock) {
    run.record.m_stock = std::move(stock);
    run.record.m_eOperationType = op;
    if (const CUserConfig* user = getUserConfig())
        run.record.m_strUserId = hostCall<&CUserConfig::getUserName>.on(*user);
}

void waitForQuote(CCheckRun& run) {
    run.priceData = waitForQuote(run.code, run.setting.m_ePriceType, run.op, run.family.m_eQuoteWait);
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

void takePrices(CCheckRun& run) {
    if (run.setting.m_ePriceType == EPriceType::Specified) {
        const COrderSingleParam* line = run.line();
        run.calcPrice = run.orderPrice = line != nullptr ? finiteOrUnset(line->m_dPrice) : kUnsetDouble;
    } else if (run.priceData) {
        run.calcPrice = calcPriceOf(run.priceData, run.setting.m_ePriceType, run.op, 0);
        run.orderPrice = orderPriceOf(run.priceData, run.setting.m_ePriceType, run.op, 0);
    }
}

void takeVolume(CCheckRun& run) {
    const COrderSingleParam* line = run.line();
    if (line != nullptr && !isUnset(line->m_nVolume)) {
        run.volume = line->m_nVolume;
    } else if (run.strategy.m_bUseAmount && run.family.m_pfnVolumeOfAmount != nullptr) {
        run.volume = run.family.m_pfnVolumeOfAmount(run);
    } else {
        run.volume = run.strategy.m_nVolume;
    }
}

boost::shared_ptr<utils::KNError> splitVolumes(CCheckRun& run, EOperationType op) {
    static const std::string unnamed;
    const bool isNamed = run.family.m_eSplitInstrument == ESplitInstrument::Named;
    const auto error = boost::make_shared<utils::KNError>();
    run.volumes = hostCall<&CTradeClient::splitEntrusts>(
        run.volume, run.calcPrice, run.setting.m_ePriceType, run.accounts, run.ratios,
        run.strategy.m_ePositionType, isNamed ? run.stock().m_strMarket : unnamed,
        isNamed ? run.stock().m_strCode : unnamed, op, EHedge_Flag_Type::Speculation, error);
    // A host that rounds the parts may return a part above zero for a volume below zero.
    if (run.volume < 0) {
        for (int& volume : run.volumes)
            volume = std::min(volume, 0);
    }
    return error;
}

bool checkSplitCount(const CCheckRun& run, std::size_t count, const utils::KNError& error) {
    return count == run.accounts.size() || failSplit(run, error);
}

bool failSplit(const CCheckRun& run, const utils::KNError& error) {
    showCheckFailure(sourceHead(run) + QStringLiteral("分单失败: ") +
                     QString::fromStdString(error.errorMsg()));
    return false;
}

bool splitOverAccounts(CCheckRun& run) {
    if (isInvalidPrice(run.calcPrice)) run.calcPrice = fallbackPriceOf(run.priceData);
    const auto error = splitVolumes(run, run.op);
    if (run.family.m_pfnCheckVolumes != nullptr && !run.family.m_pfnCheckVolumes(run)) return false;
    return checkSplitCount(run, run.volumes.size(), *error);
}

CCodeOrderParam makeRecord(const CCheckRun& run, EOperationType op, const CAccountInfoPtr& account,
                           int volume) {
    CCodeOrderParam record = run.record;
    stampRecord(run, op, account, volume, record);
    return record;
}

bool checkRecordPrice(const CCheckRun& run, const CCodeOrderParam& record) {
    if (record.m_ePriceType != EPriceType::Specified) return true;
    if (!std::isfinite(record.m_dPrice)) // orderSettingToParam of the host may have changed a valid price
        return failPrice(run, QString::fromUtf8(kBadStockPrice), record.m_stock.m_strCode);
    if (!isZero(record.m_dPrice)) return true;
    showCheckFailure(sourceHead(run) + QStringLiteral("不能以0为模型价报单!"));
    return false;
}

bool buildRecords(CCheckRun& run, EOperationType op) {
    const auto isLeftOut = run.family.m_pfnIsLeftOut;
    for (std::size_t i = 0; i < run.accounts.size(); ++i) {
        if (run.volumes[i] < 1 || !run.accounts[i]) continue;
        run.codes.push_back(run.record);
        stampRecord(run, op, run.accounts[i], run.volumes[i], run.codes.back());
        const bool isDropped = isLeftOut != nullptr && isLeftOut(run, run.volumes[i]);
        const bool isGood = isDropped || checkRecordPrice(run, run.codes.back());
        if (isDropped || !isGood) run.codes.pop_back();
        if (!isGood) return false;
    }
    return true;
}

bool beginCheck(CCheckRun& run) {
    if (!checkOrderNumber(run) || !checkLineCount(run) || !resolveAccounts(run)) return false;
    takeSetting(run);
    if (!resolveCode(run)) return false;
    loadInstrument(run);
    return true;
}

bool finishCheck(CCheckRun& run) {
    waitForQuote(run);
    if (run.family.m_pfnCheckPrice != nullptr && !run.family.m_pfnCheckPrice(run)) return false;
    takePrices(run);
    takeVolume(run);
    if (!splitOverAccounts(run)) return false;
    run.codes.reserve(run.codes.size() + run.accounts.size());
    return buildRecords(run, run.op);
}

bool runFamilyCheck(CCheckRun run) {
    return beginCheck(run) && finishCheck(run);
}

} // namespace TC
