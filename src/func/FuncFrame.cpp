#include "orderservice/func/FuncFrame.h"

#include "orderservice/base/Text.h"
#include "orderservice/check/AccountLookup.h"
#include "orderservice/check/CommandGuard.h"
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/Reports.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/func/FuncStrategy.h"
#include "orderservice/func/FuncVolumes.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/OrderClient.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

constexpr char kNothingToTrade[] = "[函数交易]　函数: %1, 没有可下单的数量!";

bool hasVolume(const CCodeOrderParam& record) {
    const bool isMoney = !isInvalidPrice(record.m_dQuantity);
    return isMoney ? record.m_dQuantity > 0 : record.m_nVolume >= 1;
}

/// The guard refuses what no trading layer can trade.
bool isRefusedByGuard(const COrderComandParam& command) {
    return isCommandGuardOn() && (command.m_codes.empty() ||
                                  !std::all_of(command.m_codes.begin(), command.m_codes.end(), hasVolume));
}

} // namespace

void CFuncReporter::reportFully(const QString& text) const {
    sendMsg(text, utils::ELogLevel::Warn);
    showCheckFailure(text);
    reportToCaller(text);
}

void CFuncReporter::reportPlainly(const QString& text) const {
    sendMsg(text, utils::ELogLevel::Warn);
    reportToCaller(text);
}

void CFuncReporter::reportToCaller(const QString& text) const {
    const CTradeKey key = readTradeKey(m_strTradeKey);
    if (m_callback) m_callback(key.m_nId, key.m_strKey, str2KNError(text.toStdString()));
}

bool CFuncRun::isPriceGivenByLine() const {
    return priceType() == EPriceType::Specified ||
           (knowsSpecifiedByRow && priceType() == EPriceType::SpecifiedByRow);
}

void takeAccounts(CFuncRun& run) {
    const CUserConfig* const user = getUserConfig();
    if (user == nullptr) return;
    hostCall<&CUserConfig::getAccountsWeights>.on(
        *user, brokerTypeOfCall(run.strategy.m_eTradeType), run.strategy.m_eSelectedAccountType,
        run.strategy.m_strSelectedAccount, run.accounts, run.ratios, false);
    takeWeights(run.accounts, run.ratios, run.weights);
}

void takeSetting(CFuncRun& run, ESettingSlot slot) {
    run.setting = run.strategy.setting(slot);
    if (run.param.m_nPrType != -1) run.setting.m_ePriceType = static_cast<EPriceType>(run.param.m_nPrType);
}

void readQuote(CFuncRun& run) {
    if (run.isPriceGivenByLine())
        run.priceData = hostCall<&CQuoteClient::getStockPrice>(run.code);
    else
        run.priceData = waitForQuote(run.code, run.priceType(), run.op, EQuoteWait::UnlessSpecified);
}

void takePricesAndVolume(CFuncRun& run) {
    const COrderSingleParam* const line = run.line();
    if (run.isPriceGivenByLine()) {
        run.calcPrice = run.orderPrice = line != nullptr ? finiteOrUnset(line->m_dPrice) : kUnsetDouble;
    } else {
        run.calcPrice = calcPriceOf(run.priceData, run.priceType(), run.op, 0);
        run.orderPrice = orderPriceOf(run.priceData, run.priceType(), run.op, 0);
    }
    const bool hasVolume = line != nullptr && !isUnset(line->m_nVolume);
    run.volume = hasVolume ? line->m_nVolume : run.strategy.m_nVolume;
}

int minUnitOf(const CFuncRun& run) {
    if (!run.detail) return 1;
    return std::max(1, knservice::getTradeMinUnit(run.stock().m_strMarket, run.stock().m_strCode,
                                                  unsetEnum<EOperationType>()));
}

bool isPriceUsable(const CFuncRun& run) {
    if (run.isPriceGivenByLine()) return run.line() != nullptr && isPriceGiven(run.line()->m_dPrice);
    if (!run.priceData) return false;
    if (run.priceType() == EPriceType::NoQuote) return true;
    return !isInvalidPrice(originPriceOf(run.priceData, run.priceType(), run.op)) &&
           !isZero(calcPriceOf(run.priceData, run.priceType(), run.op, 0));
}

void settleCalcPrice(CFuncRun& run) {
    if (isInvalidPrice(run.calcPrice)) run.calcPrice = fallbackPriceOf(run.priceData);
    if (!run.isPriceGivenByLine()) run.calcPrice = calcPriceOf(run.priceData, run.priceType(), run.op, 0);
}

bool isWithinLimits(const CFuncRun& run, double price) {
    return price - run.priceData->m_dFallbackPrice >= -kPriceTolerance &&
           price - run.priceData->m_dUpperLimit <= kPriceTolerance;
}

void takeRatios(CFuncRun& run) {
    if (!run.strategy.m_bByPercent) return;
    run.volume = 0;
    for (const CAccountInfoPtr& account : run.accounts)
        run.accountVolumes.push_back(account
                                         ? getAccountPercentNum(hostCall<&CAccountInfo::getKey>.on(*account),
                                                                run.op, run.param.m_nOrderType, run.code,
                                                                run.calcPrice, run.strategy.m_dPercent)
                                         : 0);
}

std::int64_t volumeOf(const CFuncRun& run, std::size_t account) {
    const bool isByRatio = run.strategy.m_bByPercent && run.accountVolumes.size() == run.accounts.size();
    return isByRatio ? run.accountVolumes[account] : run.volume;
}

std::int64_t volumeOfAmount(const CFuncRun& run, double fixedPrice) {
    const double amount = finiteOrUnset(run.strategy.m_dAmount);
    if (isInvalidPrice(amount) || isInvalidPrice(run.calcPrice) || isZero(run.calcPrice))
        return kNoVolumeLimit;
    const double volume = std::trunc(amount / (isInvalidPrice(fixedPrice) ? run.calcPrice : fixedPrice));
    return std::fabs(volume) < static_cast<double>(kNoVolumeLimit) ? static_cast<std::int64_t>(volume)
                                                                   : kNoVolumeLimit;
}

CCodeOrderParam makeRecord(const CFuncRun& run, const CAccountInfoPtr& account, std::int64_t volume) {
    CCodeOrderParam record = run.record;
    stampRecord(run, run.op, account, static_cast<int>(std::min(volume, kLargestVolume)),
                run.strategy.m_ePositionType, record);
    return record;
}

bool hasPrice(const CCodeOrderParam& record) {
    if (record.m_ePriceType != EPriceType::Specified) return true;
    return std::isfinite(record.m_dPrice) &&
           record.m_dPrice > kPriceTolerance; // the host may have changed it
}

bool failModelPrice(const CFuncRun& run, const CCodeOrderParam& record) {
    return fail(run, "[函数交易] 函数: %1,[%2]不能以[%3]为指定价报单!",
                {QString::fromStdString(run.param.m_strOrderCode), priceText(record.m_dPrice)});
}

bool isUsable(const CFuncRun& run, const CAccountInfo& account, std::int64_t volume, std::int64_t can,
              const char* pattern, QString& text) {
    if (can >= volume && volume <= kLargestVolume) return true;
    text = utils::fillText(QString::fromUtf8(pattern),
                           {accountText(account), QString::fromStdString(run.param.m_strOrderCode),
                            QString::number(can), QString::number(volume)});
    return false;
}

bool fail(const CFuncRun& run, const char* pattern, std::initializer_list<QString> arguments) {
    // The patterns have the function's name first, and the arguments after it.
    QString text = QString::fromUtf8(pattern);
    const std::vector<QString> rest = arguments;
    const auto at = [&](std::size_t i) { return i < rest.size() ? rest[i] : QString(); };
    text = utils::fillText(text, {run.param.m_strFuncName, at(0), at(1), at(2), at(3)});
    run.reporter.reportFully(text);
    return false;
}

COrderComandParamPtr makeCommand(CFuncRun& run, EQdTraderType traderType) {
    auto command = boost::make_shared<COrderComandParam>();
    command->m_eTraderType = traderType;
    command->m_codes = std::move(run.records);
    command->m_bUnion = true;
    command->m_bFuncOrder = true;
    command->m_bForceConfirm = luawrapper::isOrderSwitchOn(kForceConfirmSwitch);
    command->m_eStrategyType = EOrderStrategyType::Function;
    command->m_strRemark = run.param.m_strNote.empty() ? run.setting.m_strCmdLog : run.param.m_strNote;
    command->m_strModelName = run.param.m_strModelName;
    return command;
}

void sendCommand(const CFuncRun& run, const COrderComandParamPtr& command, const char* logText) {
    if (!isCmdUser()) return;
    if (isRefusedByGuard(*command)) {
        fail(run, kNothingToTrade);
        return;
    }
    logFuncLine(utils::ELogLevel::Info, "TC::COrderFuncService::placeCommands", logText);
    hostCall<&COrderClient::orderCommands>(command);
}

QString priceText(double price) {
    return QString::number(price);
}

QString accountText(const CAccountInfo& account) {
    return accountDisplayIDQs(account);
}

QString priceTypeText(const CFuncRun& run) {
    return knPriceTypeToString(run.priceType(), run.stock().m_strCode, false);
}

} // namespace TC
