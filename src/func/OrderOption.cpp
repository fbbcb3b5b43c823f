// Options on stocks. The host splits the volume over the accounts.
#include "orderservice/base/KNError.h"
#include "orderservice/check/CodeLookup.h"
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/func/FuncVolumes.h"
#include "orderservice/func/OrderRoutines.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace TC {
namespace {

constexpr int kFirstOption = 50;
constexpr int kLastOption = 59;
constexpr auto kAnotherGivenPrice = static_cast<EPriceType>(26); ///< needs no quote to wait for

/// Reports the text with the title of the source in front of it. Always returns false.
bool failTitled(const CFuncRun& run, const char* pattern, std::initializer_list<QString> arguments = {}) {
    const QString title = orderStrategyTypeToOrderTitle(run.strategy.m_eStrategyType);
    return fail(run, (title + QString::fromUtf8(pattern)).toUtf8().constData(), arguments);
}

bool worksOnStock(EOperationType op) {
    return op == EOperationType::OptionLock || op == EOperationType::OptionUnlock;
}

/// The digits at the end of the code. A code of digits stays whole.
QString digitsAtTheEnd(const QString& code) {
    int begin = code.size();
    while (begin > 0 && code[begin - 1] >= QLatin1Char('0') && code[begin - 1] <= QLatin1Char('9'))
        --begin;
    return code.mid(begin);
}

void resolveOptionCode(QString& code) {
    if (resolveStockCode(code, EKeyJoin::Plain, EFullCode::Refused)) return;
    const QString upper = code.toUpper();
    const bool isStock = code.size() >= kFullCodeLength && hostCall<&CExchangeClient::hasStock>(upper);
    code = isStock ? upper : digitsAtTheEnd(code);
}

bool resolveOption(CFuncRun& run) {
    run.code = run.strategy.m_strCode;
    if (run.line() == nullptr || run.line()->m_strCode.isEmpty()) return true;
    run.code = run.line()->m_strCode;
    resolveOptionCode(run.code);
    const bool isKnown = worksOnStock(run.op) ? hostCall<&CExchangeClient::hasStock>(run.code)
                                              : hostCall<&CExchangeClient::hasOption>(run.code);
    return isKnown || failTitled(run, "[函数交易] 函数: %1, 下单代码[%2]不合法!", {run.code});
}

void readOptionQuote(CFuncRun& run) {
    if (run.priceType() == kAnotherGivenPrice)
        run.priceData = hostCall<&CQuoteClient::getStockPrice>(run.code);
    else
        readQuote(run);
}

/// The total volume of an amount of money, at the price of the calculation.
void takeOptionAmount(CFuncRun& run) {
    if (!run.strategy.m_bUseAmount) return;
    const double before = run.calcPrice;
    settleCalcPrice(run);
    run.volume = volumeOfAmount(run);
    run.calcPrice = before;
}

/// The total for the split. A total that no record can hold becomes the number for which the split must fail.
int totalOf(const CFuncRun& run) {
    if (!isStorable(run.volume)) return kUnsetInt;
    return static_cast<int>(std::max<std::int64_t>(run.volume, 0));
}

/// Returns one volume for each account, or another number of volumes after a report.
std::vector<int> splitOption(CFuncRun& run, const std::vector<double>& ratios) {
    const auto error = boost::make_shared<utils::KNError>();
    const std::vector<int> volumes = hostCall<&CTradeClient::splitEntrusts>(
        totalOf(run), run.calcPrice, run.priceType(), run.accounts, ratios, run.strategy.m_ePositionType,
        run.stock().m_strMarket, run.stock().m_strCode, run.op, EHedge_Flag_Type::Speculation, error);
    if (volumes.size() != run.accounts.size())
        failTitled(run, "[交易函数] 函数: %1,分单失败: %2", {QString::fromStdString(error->errorMsg())});
    return volumes;
}

bool addOptionRecords(CFuncRun& run, const std::vector<int>& volumes) {
    for (std::size_t i = 0; i < run.accounts.size(); ++i) {
        if (volumes[i] < 1 || !run.accounts[i]) continue;
        const CCodeOrderParam record = makeRecord(run, run.accounts[i], volumes[i]);
        if (!hasPrice(record))
            return failTitled(run, "[函数交易] 函数: %1,[%2]不能以[%3]为指定价报单!",
                              {QString::fromStdString(run.param.m_strOrderCode), priceText(record.m_dPrice)});
        run.records.push_back(record);
    }
    return true;
}

bool checkOption(CFuncRun& run) {
    const int number = run.param.m_nOpType;
    constexpr int kOffset = 18; ///< from the number of the call to that of the trading layer
    if (number < kFirstOption || number > kLastOption)
        return failTitled(run, "[函数交易] 函数:%1, 下单指令[%2]不合法!", {QString::number(number)});
    if (run.param.m_orders.size() > 1) return failTitled(run, "[函数交易] 函数:%1, 下单指令不合法!");
    takeAccounts(run);
    run.op = static_cast<EOperationType>(number - kOffset);
    takeSetting(run, ESettingSlot::StockOption);
    if (!resolveOption(run)) return false;
    loadInstrument(run);
    readOptionQuote(run);
    if (!isPriceUsable(run))
        return failTitled(run, "证券:[%2] %3无效,无法下单!", {run.code, priceTypeText(run)});
    takePricesAndVolume(run);
    takeOptionAmount(run);
    if (isInvalidPrice(run.calcPrice)) run.calcPrice = fallbackPriceOf(run.priceData);
    const std::vector<int> volumes = splitOption(run, run.ratios);
    return volumes.size() == run.accounts.size() && addOptionRecords(run, volumes);
}

} // namespace

void orderOption(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                 const CFuncReporter& reporter) {
    CFuncRun run{{}, param, strategy, reporter};
    if (!checkOption(run) || !isCmdUser()) return;
    const COrderComandParamPtr command = makeCommand(run, EQdTraderType::Option);
    command->m_eHedgeType = EQdHedgeType::Hedge;
    command->m_weights = run.weights;
    command->m_strAlgoParam = param.m_strTradeKey;
    sendCommand(run, command, "placeCommands: [orderservice] stock speculation.");
}

} // namespace TC
