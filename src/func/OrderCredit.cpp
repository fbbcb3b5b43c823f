// Margin trading: one instrument on each account, and the direct repayment of money.
#include "orderservice/check/CodeLookup.h"
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/func/FuncVolumes.h"
#include "orderservice/func/OrderRoutines.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"

#include <cstddef>
#include <string>

namespace TC {
namespace {

constexpr char kBadCredit[] = "[函数交易]　函数: %1, 下单代码 [%2] 不合法!";
constexpr char kNoCreditPrice[] = "[函数交易]　函数: %1,　证券 [%2] %3无效, 无法下单!";
constexpr char kCreditOutOfLimits[] = "[函数交易]　函数: %1,指定价%2 不在[%3]涨跌停[%4, %5]范围内!";
constexpr char kNoCreditVolume[] = "[函数交易]函数: %1,[%2]下单量[%3]无效";

constexpr int kDirectRepayment = 32;

/// What the call trades, besides the run.
struct CCredit {
    CFuncRun run;
    std::string contract;       ///< number of the contract that the order ends
    bool isCodeToRepay = false; ///< the code is no instrument: a repayment passes it on
};

EOperationType creditOperation(int opType) {
    constexpr int kOffset = 7; ///< from the number of the call to that of the trading layer
    switch (shownNumber(opType, 0)) {
    case 23:
        return EOperationType::Buy;
    case 24:
        return EOperationType::Sell;
    case kDirectRepayment:
        return EOperationType::RepayMoney;
    default:
        return static_cast<EOperationType>(opType - kOffset);
    }
}

bool resolveCredit(CCredit& credit) {
    CFuncRun& run = credit.run;
    run.code = run.strategy.m_strCode;
    if (run.line() == nullptr || run.line()->m_strCode.isEmpty()) return true;
    credit.contract = run.line()->m_strCompact.toStdString();
    run.code = run.line()->m_strCode;
    if (resolveStockCode(run.code, EKeyJoin::Plain)) return true;
    credit.isCodeToRepay = run.param.m_nOpType == kDirectRepayment;
    return credit.isCodeToRepay || fail(run, kBadCredit, {run.code});
}

/// The amount to repay, in currency units.
double repaymentOf(const CFuncRun& run) {
    const COrderSingleParam* const line = run.line();
    if (line != nullptr && !isInvalidPrice(line->m_dAmount)) return line->m_dAmount;
    if (run.strategy.m_bUseAmount) return run.strategy.m_dAmount;
    return isStorable(run.strategy.m_nVolume) ? run.strategy.m_nVolume
                                              : kUnsetDouble; // a number that was cut
}

bool addRepayments(CCredit& credit) {
    CFuncRun& run = credit.run;
    const double amount = finiteOrUnset(repaymentOf(run));
    if (isInvalidPrice(amount))
        return fail(run, kNoCreditVolume,
                    {QString::fromStdString(run.param.m_strOrderCode), priceText(repaymentOf(run))});
    for (const CAccountInfoPtr& account : run.accounts) {
        if (!account) continue;
        CCodeOrderParam record = run.record;
        record.m_stock = CStockInfo(); // money has no instrument
        fixTimeRange(record);
        record.m_account = account;
        record.m_eHedgeFlag = EHedge_Flag_Type::Speculation;
        record.m_eOperationType = run.op;
        record.m_ePositionType = run.strategy.m_ePositionType;
        record.m_eEntrustType = operationTypeToEntrustType(run.op);
        record.m_strRepayText = credit.isCodeToRepay ? run.code.toStdString() : std::string();
        record.m_nQuantityKind = kQuantityKindPlain;
        record.m_dQuantity = amount;
        record.m_nVolume = truncateToInt(amount);
        run.records.push_back(record);
    }
    return true;
}

/// The volume of one account. Some sales may be of all that can be sold; a return of shares is never rounded.
std::int64_t legalCreditVolume(const CFuncRun& run, const std::string& accountKey) {
    if (run.op == EOperationType::ReturnShares) return run.volume;
    const std::int64_t rounded = run.volume - run.volume % run.unit;
    const bool isSale = run.op == EOperationType::Sell || run.op == EOperationType::SellToRepay;
    if (!isSale || rounded == run.volume) return rounded;
    const std::int64_t can = getCanOrderVolume(accountKey, EOperationType::Sell, run.code, run.calcPrice);
    return run.volume == can ? run.volume : rounded;
}

bool addCreditRecord(CCredit& credit, const CAccountInfoPtr& account) {
    CFuncRun& run = credit.run;
    const QString orderCode = QString::fromStdString(run.param.m_strOrderCode);
    if (run.volume < 1) return fail(run, kNoCreditVolume, {orderCode, QString::number(run.volume)});
    const std::string key = hostCall<&CAccountInfo::getKey>.on(*account);
    if (isStorable(run.volume)) run.volume = legalCreditVolume(run, key);
    CCodeOrderParam record = makeRecord(run, account, run.volume);
    record.m_eEntrustType = operationTypeToEntrustType(run.op);
    record.m_strRepayText = credit.contract;
    if (!hasPrice(record)) return failModelPrice(run, record);
    const std::int64_t can = getCanOrderVolume(key, record.m_eOperationType, run.code, run.calcPrice);
    QString text;
    if (!isUsable(run, *account, run.volume, can, kShortOfSecurities, text)) {
        run.reporter.reportToCaller(text); // only the caller, not the user
        return false;
    }
    run.records.push_back(record);
    return true;
}

bool takeCreditPrice(CFuncRun& run) {
    readQuote(run);
    const bool hasLimits = !run.isPriceGivenByLine() || run.priceData;
    if (!hasLimits || !isPriceUsable(run)) return fail(run, kNoCreditPrice, {run.code, priceTypeText(run)});
    takePricesAndVolume(run);
    run.unit = minUnitOf(run);
    settleCalcPrice(run);
    if (!run.isPriceGivenByLine() || isWithinLimits(run, run.calcPrice)) return true;
    return fail(run, kCreditOutOfLimits,
                {priceText(run.calcPrice), QString::fromStdString(run.param.m_strOrderCode),
                 priceText(run.priceData->m_dFallbackPrice), priceText(run.priceData->m_dUpperLimit)});
}

bool checkCredit(CCredit& credit) {
    CFuncRun& run = credit.run;
    takeAccounts(run);
    run.op = creditOperation(run.param.m_nOpType);
    takeSetting(run, ESettingSlot::Credit);
    if (!resolveCredit(credit)) return false;
    loadInstrument(run);
    if (run.param.m_nOpType == kDirectRepayment) return addRepayments(credit);
    if (!takeCreditPrice(run)) return false;
    if (run.strategy.m_bUseAmount) run.volume = volumeOfAmount(run);
    for (const CAccountInfoPtr& account : run.accounts) {
        if (account && !addCreditRecord(credit, account)) return false;
    }
    return true;
}

} // namespace

void orderCredit(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                 const CFuncReporter& reporter) {
    CCredit credit{{{}, param, strategy, reporter}, {}, false};
    if (!checkCredit(credit) || !isCmdUser()) return;
    const COrderComandParamPtr command = makeCommand(credit.run, EQdTraderType::Credit);
    command->m_weights = credit.run.weights;
    command->m_strAlgoParam = param.m_strTradeKey;
    command->m_strStrategyName = param.m_strStrategyName;
    sendCommand(credit.run, command, "placeCommands: [orderservice] credit operation.");
}

} // namespace TC
