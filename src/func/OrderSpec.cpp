// Futures: opening and closing contracts of one instrument on each account.
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/func/FuncVolumes.h"
#include "orderservice/func/OrderRoutines.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/OrderClient.h"

#include <cstddef>

namespace TC {
namespace {

constexpr char kBadLines[] = "[函数交易]　函数: %1, 下单参数不合法!";
constexpr char kBadFuture[] = "[函数交易]　函数: %1, 下单代码 [%2] 不合法!";
constexpr char kNoFuturePrice[] = "[函数交易]　合约 [%2] %3无效, 无法下单!";
constexpr char kOutOfLimits[] = "[函数交易]　函数: %1,指定价%2 不在涨跌停[%3, %4]范围内!";
constexpr char kNoModelPrice[] = "[函数交易]　函数: %1,　须大于0为模型价报单!";
constexpr char kFiltered[] = "[函数交易]账号[%2] 的下单量[%3]无效, 自动过滤!";
constexpr char kShort[] = "账号: [%1], 您的[%2]可用量 %3 少于您输入的总量 %4 ";

/// The operations 14 and 15 only open a position.
EOperationType futureOperation(int opType) {
    constexpr int kOpenLongOnly = 14;
    if (opType < kOpenLongOnly) return static_cast<EOperationType>(opType);
    return opType == kOpenLongOnly ? EOperationType::OpenLong : EOperationType::OpenShort;
}

void takeLimits(CFuncRun& run) {
    const COrderSingleParam* const line = run.line();
    COrderSetting& setting = run.setting;
    if (line != nullptr && line->m_bHasFirstLimit) {
        setting.m_dFirstLimit = finiteOrUnset(line->m_dFirstLimit);
        setting.m_bFirstLimitOn = !isInvalidPrice(setting.m_dFirstLimit);
    }
    if (line != nullptr && line->m_bHasSecondLimit) {
        setting.m_dSecondLimit = finiteOrUnset(line->m_dSecondLimit);
        setting.m_bSecondLimitOn = !isInvalidPrice(setting.m_dSecondLimit);
    }
}

bool resolveFuture(CFuncRun& run) {
    run.code = run.strategy.m_strCode;
    if (run.line() != nullptr && !run.line()->m_strCode.isEmpty()) run.code = run.line()->m_strCode;
    return hostCall<&CExchangeClient::hasFuture>(run.code) || fail(run, kBadFuture, {run.code});
}

bool checkFutureQuote(const CFuncRun& run) {
    const bool isNoPrice = run.isPriceGivenByLine() && run.line() != nullptr &&
                           finiteOrUnset(run.line()->m_dPrice) == kUnsetDouble;
    return (isQuoteUsable(run.priceData, run.priceType(), run.op) && !isNoPrice) ||
           fail(run, kNoFuturePrice, {run.code, priceTypeText(run)});
}

bool checkFutureLimits(const CFuncRun& run) {
    return !run.isPriceGivenByLine() || isWithinLimits(run, run.calcPrice) ||
           fail(run, kOutOfLimits,
                {priceText(run.calcPrice), priceText(run.priceData->m_dFallbackPrice),
                 priceText(run.priceData->m_dUpperLimit)});
}

/// Adds the record of one account, or leaves the account out. Returns false if the call must end.
bool addFutureRecord(CFuncRun& run, std::size_t index) {
    const CAccountInfoPtr& account = run.accounts[index];
    if (!account) return true;
    const std::int64_t volume = volumeOf(run, index);
    if (volume < 1) {
        fail(run, kFiltered, {accountText(*account), QString::number(volume)});
        return true;
    }
    const CCodeOrderParam record = makeRecord(run, account, volume);
    if (!hasPrice(record)) return fail(run, kNoModelPrice);
    const std::string key = hostCall<&CAccountInfo::getKey>.on(*account);
    const std::int64_t can = getCanOrderVolume(key, record.m_eOperationType, run.code, run.calcPrice);
    QString text;
    if (!isUsable(run, *account, volume, can, kShort, text)) {
        run.reporter.reportPlainly(text);
        return false;
    }
    run.records.push_back(record);
    return true;
}

bool checkFuture(CFuncRun& run) {
    if (run.param.m_orders.size() > 1) return fail(run, kBadLines);
    takeAccounts(run);
    run.op = futureOperation(run.param.m_nOpType);
    takeSetting(run, ESettingSlot::Future);
    takeLimits(run);
    if (!resolveFuture(run)) return false;
    loadInstrument(run);
    readQuote(run);
    if (!checkFutureQuote(run)) return false;
    takePricesAndVolume(run);
    settleCalcPrice(run);
    if (!checkFutureLimits(run)) return false;
    takeRatios(run);
    for (std::size_t i = 0; i < run.accounts.size(); ++i) {
        if (!addFutureRecord(run, i)) return false;
    }
    return true;
}

} // namespace

void orderSpec(const COrderFuncParam& param, const COrderStrategyParam& strategy,
               const CFuncReporter& reporter) {
    CFuncRun run{{}, param, strategy, reporter};
    if (!checkFuture(run) || !isCmdUser()) return;
    const COrderComandParamPtr command = makeCommand(run, EQdTraderType::FutureSpeculation);
    command->m_weights = run.weights;
    command->m_strStrategyName = param.m_strStrategyName;
    sendCommand(run, command, "placeCommands: [orderservice] future speculation.");
}

} // namespace TC
