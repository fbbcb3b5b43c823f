// Stocks and the connects: buying and selling one instrument on each account, plain or by an algorithm.
#include "orderservice/check/CommandGuard.h"
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/func/AlgoMessage.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/func/FuncVolumes.h"
#include "orderservice/func/OrderRoutines.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"

#include <cmath>
#include <cstddef>
#include <exception>

namespace TC {
namespace {

constexpr char kBadStock[] = "[函数交易]　函数: %1, 下单代码 [%2] 不合法!";
constexpr char kNoStockPrice[] = "[函数交易]　函数: %1,　证券 [%2] %3 无效, 无法下单!";
constexpr char kStockOutOfLimits[] = "[函数交易]　函数: %1,指定价 %2 不在[%3]涨跌停[%4, %5]范围内!";
constexpr char kStockFiltered[] = "[函数交易] 账号[%2], [%3]的下单量[%4]无效, 自动过滤!";

constexpr char kOtherStockOrderType[] = "[函数交易]　函数: %1, opType %2 和 orderType %3 不能用于单只股票!";

constexpr auto kAlgorithmOrder = static_cast<EOrderType>(13);
constexpr auto kAlgorithmPlatform = static_cast<ETradePlatform>(11);

/// What differs between the markets of this routine.
struct CStockMarket {
    EOrderStrategyTradeType m_eTradeType;
    EQdTraderType m_eTraderType;
    ESettingSlot m_eSlot;
};

const CStockMarket& marketOf(int tradeType) {
    static constexpr CStockMarket kMarkets[] = {
        {EOrderStrategyTradeType::HGT, EQdTraderType::HGT, ESettingSlot::FunctionHGT},
        {EOrderStrategyTradeType::SGT, EQdTraderType::SGT, ESettingSlot::FunctionSGT},
        {EOrderStrategyTradeType::Stock, EQdTraderType::Stock, ESettingSlot::Stock},
    };
    for (const CStockMarket& market : kMarkets) {
        if (static_cast<int>(market.m_eTradeType) == tradeType) return market;
    }
    return kMarkets[2];
}

EOperationType stockOperation(const COrderFuncParam& param) {
    constexpr int kBuy = 23;
    if (param.m_nOpType != kBuy) return EOperationType::Sell;
    const bool isGiven = param.m_nPrType == static_cast<int>(EPriceType::SpecifiedByRow);
    return isGiven ? static_cast<EOperationType>(kBuyAtGivenPrice) : EOperationType::Buy;
}

bool resolveStock(CFuncRun& run) {
    run.code = run.strategy.m_strCode;
    if (run.line() == nullptr || run.line()->m_strCode.isEmpty()) return true;
    run.code = run.line()->m_strCode;
    return resolveFullCode(run.code) || fail(run, kBadStock, {run.line()->m_strCode});
}

QString orderCodeText(const CFuncRun& run) {
    return QString::fromStdString(run.param.m_strOrderCode);
}

bool failLimits(const CFuncRun& run) {
    return fail(run, kStockOutOfLimits,
                {priceText(run.calcPrice), orderCodeText(run), priceText(run.priceData->m_dFallbackPrice),
                 priceText(run.priceData->m_dUpperLimit)});
}

/// At the price type 49 some instruments have a phase with a price of its own, which is not limited.
bool checkStockLimits(CFuncRun& run) {
    constexpr double kPhaseWithPrice = 22;
    if (!run.isPriceGivenByLine()) return true;
    const bool hasPhases = run.priceType() == EPriceType::SpecifiedByRow && isStarMarket(run.stock());
    if (hasPhases && run.priceData->m_dPhase == kPhaseWithPrice) {
        const double price = finiteOrUnset(run.priceData->m_dPhasePrice);
        if (price != kUnsetDouble) run.calcPrice = run.record.m_dPrice = price;
        return true;
    }
    return isWithinLimits(run, run.calcPrice) || failLimits(run);
}

void takeStockVolume(CFuncRun& run) {
    run.unit = minUnitOf(run);
    if (run.strategy.m_bUseAmount)
        run.volume = volumeOfAmount(run, isPricedAtPar(run.stock()) ? knservice::kParPrice : kUnsetDouble);
    takeRatios(run);
}

/// A time that cannot be read is left out.
void takeAlgorithm(const std::string& algoParam, CCodeOrderParam& record) {
    if (algoParam.empty()) return;
    record.m_eOrderType = kAlgorithmOrder;
    try {
        (void)readValidTimeEnd(algoParam, record.m_nValidTimeEnd);
    } catch (const std::exception& error) {
        logFuncLine(utils::ELogLevel::Info, "TC::COrderFuncService::orderStock",
                    {"COrderFuncService parser smartAlgo Param error ", error.what()});
    }
}

/// Adds the record of one account, or leaves the account out. Returns false if the call must end. A volume
/// that is rounded for an account is the volume of the next accounts too.
bool addStockRecord(CFuncRun& run, std::size_t index, const std::string& algoParam) {
    const CAccountInfoPtr& account = run.accounts[index];
    if (!account) return true;
    run.volume = volumeOf(run, index);
    if (run.volume < 1) {
        fail(run, kStockFiltered, {accountText(*account), orderCodeText(run), QString::number(run.volume)});
        return true;
    }
    const std::string key = hostCall<&CAccountInfo::getKey>.on(*account);
    const std::int64_t can = getCanOrderVolume(key, run.op, run.code, run.calcPrice);
    if (isStorable(run.volume)) run.volume = calcRightOrderVolume(run.op, run.volume, run.unit, can);
    CCodeOrderParam record = makeRecord(run, account, run.volume);
    takeAlgorithm(algoParam, record);
    if (!hasPrice(record)) return failModelPrice(run, record);
    QString text;
    if (!isUsable(run, *account, run.volume, can, kShortOfSecurities, text)) {
        run.reporter.reportPlainly(text);
        return false;
    }
    run.records.push_back(record);
    return true;
}

/// A basket of a connect whose order type is no basket's reaches this routine, where every number but 23
/// sells. If the command guard is on, it is refused.
bool checkStockNumber(const CFuncRun& run) {
    const int number = run.param.m_nOpType;
    const bool isStockNumber = funcFamilyOf(number, run.param.m_nOrderType) == EFuncFamily::Stock;
    return isStockNumber || run.line() == nullptr || !isCommandGuardOn() ||
           fail(run, kOtherStockOrderType,
                {QString::number(number), QString::number(run.param.m_nOrderType)});
}

bool checkStock(CFuncRun& run, const std::string& algoParam) {
    if (!checkStockNumber(run)) return false;
    takeAccounts(run);
    run.op = stockOperation(run.param);
    takeSetting(run, marketOf(run.param.m_nTradeType).m_eSlot);
    if (!resolveStock(run)) return false;
    loadInstrument(run);
    readQuote(run);
    const bool hasLimits = !run.isPriceGivenByLine() || run.priceData;
    if (!hasLimits || !isPriceUsable(run)) return fail(run, kNoStockPrice, {run.code, priceTypeText(run)});
    takePricesAndVolume(run);
    settleCalcPrice(run);
    if (!checkStockLimits(run)) return false;
    takeStockVolume(run);
    for (std::size_t i = 0; i < run.accounts.size(); ++i) {
        if (!addStockRecord(run, i, algoParam)) return false;
    }
    return true;
}

} // namespace

void orderStock(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                const CFuncReporter& reporter, const std::string& algoParam) {
    CFuncRun run{{}, param, strategy, reporter};
    run.knowsSpecifiedByRow = true;
    if (!checkStock(run, algoParam) || !isCmdUser()) return;
    const COrderComandParamPtr command = makeCommand(run, marketOf(param.m_nTradeType).m_eTraderType);
    command->m_strAlgoParam = param.m_strTradeKey;
    command->m_strStrategyName = param.m_strStrategyName;
    if (!algoParam.empty()) {
        command->m_ePlatform = kAlgorithmPlatform;
        command->m_strAlgoParam = getAlgParamsStr(algoParam, command->m_codes);
    }
    sendCommand(run, command, "placeCommands: [orderservice] stock speculation.");
}

} // namespace TC
