#include "orderservice/check/CheckFrame.h"

#include "orderservice/base/Text.h"
#include "orderservice/check/AccountLookup.h"
#include "orderservice/check/Reports.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/OrderTypes.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

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

/// Fills the values of one account in a record, which is a copy of the run's record.
void fillRecord(const CCheckRun& run, EOperationType op, const CAccountInfoPtr& account, int volume,
                CCodeOrderParam& record) {
    stampRecord(run, op, account, volume, run.strategy.m_ePositionType, record);
    if (run.family.m_pfnFinishRecord != nullptr) run.family.m_pfnFinishRecord(run, volume, record);
}

} // namespace

bool failCheck(const CCheckRun& run, const QString& pattern, const QString& argument) {
    showCheckFailure(utils::fillText(pattern, {orderStrategyText(run.order.m_eStrategyType),
                                               QString::number(run.strategy.m_nChannel), argument}));
    return false;
}

QString preparedAccountKey(const QVector<COrderSingleParam>& lines, const COrderStrategyParam& strategy) {
    if (strategy.m_nAccountMode != COrderStrategyParam::kTableMode) return strategy.m_strSelectedAccount;
    return lines.isEmpty() ? QString() : lines.first().m_strAccount;
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

bool isPriceTypeUsable(const COrderSetting& setting, const COrderParam& order, const CPriceDataPtr& quote,
                       EOperationType op, EQDBrokerType broker, const CStockInfo& stock) {
    if (setting.m_ePriceType == EPriceType::Specified) {
        return !order.m_orders.isEmpty() && isPriceGiven(order.m_orders.first().m_dPrice);
    }
    const CUserConfig* user = getUserConfig();
    if (!quote || user == nullptr) return false;
    if (!hostCall<&CUserConfig::isPriceTypeValid>.on(*user, setting.m_ePriceType, op, broker,
                                                     stock.m_strMarket, stock.m_strCode,
                                                     setting.m_eOrderType)) {
        return false;
    }
    const double price = hostCall<&CPriceData::getPriceForOrder>.on(*quote, setting.m_ePriceType, op, 0, {});
    return knservice::isMarketPrice(setting.m_ePriceType) || isPriceGiven(price);
}

bool checkPriceType(const CCheckRun& run) {
    const EQDBrokerType broker = orderStrategyTradeTypeToBrokerType(run.strategy.m_eTradeType);
    return isPriceTypeUsable(run.setting, run.order, run.priceData, run.op, broker, run.stock());
}

bool checkStockPrice(const CCheckRun& run) {
    return checkPriceType(run) || failPrice(run, QString::fromUtf8(kBadStockPrice), run.stock().m_strCode);
}

int volumeOfAmount(const CCheckRun& run, double fixedPrice) {
    return volumeForMoney(run, run.strategy.m_dAmount, fixedPrice);
}

int plainVolumeOfAmount(const CCheckRun& run) {
    return volumeOfAmount(run);
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
    QString accountKey = preparedAccountKey(run.order.m_orders, run.strategy);
    if (!findOrderAccounts(run.order, run.strategy, accountKey, run.accounts, run.ratios)) return false;
    takeWeights(run.accounts, run.ratios, run.weights);
    return true;
}

void takeSetting(CCheckRun& run) {
    const COrderParam& order = run.order;
    run.op = orderTypeToOperationType(order.m_nOrderType);
    run.setting = run.strategy.setting(settingSlotOf(run.family.m_eTradeType));
    if (run.line() != nullptr && run.family.m_pfnLineIntoSetting != nullptr)
        run.family.m_pfnLineIntoSetting(*run.line(), run.setting);
    if (!order.m_strOrderSetting.empty()) takeSettingText(run);
    clearUnusableLimits(run.setting);
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

void waitForQuote(CCheckRun& run) {
    run.priceData = waitForQuote(run.code, run.setting.m_ePriceType, run.op, run.family.m_eQuoteWait);
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
    fillRecord(run, op, account, volume, record);
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
        fillRecord(run, op, run.accounts[i], run.volumes[i], run.codes.back());
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

bool runFamilyCheck(const CFamilyCheck& family, const COrderParam& order, const COrderStrategyParam& strategy,
                    std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    CCheckRun run{{}, family, order, strategy, codes, weights};
    return beginCheck(run) && finishCheck(run);
}

} // namespace TC
