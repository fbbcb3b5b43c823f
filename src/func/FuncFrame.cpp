#include "orderservice/func/FuncFrame.h"

#include "orderservice/base/Text.h"
#include "orderservice/check/AccountLookup.h"
#include "orderservice/check/CodeLookup.h"
#include "orderservice/check/CommandGuard.h"
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/Reports.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/func/FuncStrategy.h"
#include "orderservice/func/FuncVolumes.h"
#include "orderservice/platform/ExchangeClient.h"
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
#include <optional>

namespace TC {
namespace {

constexpr char kNothingToTrade[] = "[函数交易]　函数: %1, 没有可下单的数量!";
constexpr char kRefusedRecord[] = "[函数交易]　函数: %1, 账号 [%2] 合约 [%3] %4, 整个指令(%5条)未发出!";

bool isPositive(double price) {
    return isPriceGiven(price) && price > 0;
}

/// What the record lacks, for the report. Prices of the type 11 are checked by hasPrice, also without the
/// guard.
std::optional<QString> missingOf(const CCodeOrderParam& record) {
    CCommandSource source;
    source.m_bNeedsPrice = false;
    source.m_bRepayment = true;
    const bool lacksPrice = record.m_ePriceType == EPriceType::SpecifiedByRow && !isPositive(record.m_dPrice);
    if (isUnset(record.m_eOperationType)) return QStringLiteral("没有操作类型");
    return lacksPrice ? QStringLiteral("没有价格") : missingOf(record, source);
}

/// If the command guard is on, refuses a command without records, or with a record that no trading layer can
/// trade.
bool passesGuard(const CFuncRun& run, const COrderComandParam& command) {
    if (!isCommandGuardOn()) return true;
    if (command.m_codes.empty()) return fail(run, kNothingToTrade);
    for (const CCodeOrderParam& record : command.m_codes) {
        if (const std::optional<QString> missing = missingOf(record)) {
            const std::string code = record.m_stock.m_strMarket + record.m_stock.m_strCode;
            return fail(run, kRefusedRecord,
                        {record.m_account ? accountText(*record.m_account) : QString(),
                         QString::fromStdString(code), *missing, QString::number(command.m_codes.size())});
        }
    }
    return true;
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
    orderCheckFaild(m_strTradeKey, str2KNError(text.toStdString()), m_callback);
}

bool CFuncRun::isPriceGivenByLine() const {
    return priceType() == EPriceType::Specified ||
           (knowsSpecifiedByRow && priceType() == EPriceType::SpecifiedByRow);
}

void takeAccounts(CFuncRun& run) {
    takeAccountsOf(run, brokerTypeOfCall(run.strategy.m_eTradeType));
}

void takeAccountsOf(CFuncRun& run, EQDBrokerType broker) {
    const CUserConfig* const user = getUserConfig();
    if (user == nullptr) return;
    hostCall<&CUserConfig::getAccountsWeights>.on(*user, broker, run.strategy.m_eSelectedAccountType,
                                                  run.strategy.m_strSelectedAccount, run.accounts, run.ratios,
                                                  false);
    takeWeights(run.accounts, run.ratios, run.weights);
}

void takeSetting(CFuncRun& run, ESettingSlot slot) {
    run.setting = run.strategy.setting(slot);
    if (run.param.m_nPrType != -1) run.setting.m_ePriceType = static_cast<EPriceType>(run.param.m_nPrType);
    clearUnusableLimits(run.setting);
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

bool resolveFullCode(QString& code) {
    if (resolveStockCode(code, EKeyJoin::Plain)) return true;
    const QString upper = code.toUpper();
    if (code.size() != kFullCodeLength ||
        !(hostCall<&CExchangeClient::hasHkstock>(upper) || hostCall<&CExchangeClient::hasSkstock>(upper)))
        return false;
    code = upper;
    return true;
}

bool isPricedAtPar(const CStockInfo& stock) {
    constexpr int kParPricedOnShenzhen = 100017;
    const int type = stock.m_strMarket == "SH" ? knservice::kTypeParPriced : kParPricedOnShenzhen;
    const bool isOnMarket = stock.m_strMarket == "SH" || stock.m_strMarket == "SZ";
    return isOnMarket && knservice::isTypedStock(type, stock.m_strMarket, stock.m_strCode, {});
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
    return wholeNumber(amount / (isInvalidPrice(fixedPrice) ? run.calcPrice : fixedPrice));
}

CCodeOrderParam makeRecord(const CFuncRun& run, const CAccountInfoPtr& account, std::int64_t volume) {
    CCodeOrderParam record = run.record;
    stampRecord(run, run.op, account, static_cast<int>(std::min(volume, kLargestVolume)),
                run.strategy.m_ePositionType, record);
    return record;
}

bool hasPrice(const CCodeOrderParam& record) {
    if (record.m_ePriceType != EPriceType::Specified) return true;
    return isPositive(record.m_dPrice); // the host may have changed it
}

bool failModelPrice(const CFuncRun& run, const CCodeOrderParam& record) {
    return fail(run, "[函数交易] 函数: %1,[%2]不能以[%3]为指定价报单!",
                {QString::fromStdString(run.param.m_strOrderCode), priceText(record.m_dPrice)});
}

bool isUsable(const CFuncRun& run, const CAccountInfo& account, std::int64_t volume, std::int64_t can,
              const char* pattern, QString& text) {
    if (can >= volume && isStorable(volume)) return true;
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

bool sendCommand(const CFuncRun& run, const COrderComandParamPtr& command, const char* logText) {
    if (!passesGuard(run, *command)) return false;
    logFuncLine(utils::ELogLevel::Info, "TC::COrderFuncService::placeCommands", {logText});
    hostCall<&COrderClient::orderCommands>(command);
    return true;
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
