// Baskets of the user's settings: of stocks, of credit and of futures, by volume, money or ratio. A row that
// cannot be traded, or an account that can have no order of it, is left out without a message; the audit gets
// a report.
#include "orderservice/check/CommandGuard.h"
#include "orderservice/check/CommandRequest.h"
#include "orderservice/check/LeftOutRows.h"
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/func/FuncParser.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/func/FuncVolumes.h"
#include "orderservice/func/OrderRoutines.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

namespace TC {
namespace {

constexpr char kNoRowPrice[] = "[函数交易]　函数: [%1] 组合交易中, 证券 [%2] %3无效, 修改下单量为0!";
constexpr char kBadBuyPrice[] = "[函数交易]　函数: %1, 组合交易买入不允许报买二到买五的价格!";
constexpr char kBadSellPrice[] = "[函数交易]　函数: %1, 组合交易卖出不允许报卖二到卖五的价格!";

/// Why a row or an account is left out, for the audit.
constexpr char kNotListed[] = "the code is not a future that can be traded";
constexpr char kNoVolume[] = "the volume is below 1";
constexpr char kBadWeight[] = "the weight is below zero or not finite";
constexpr char kTooLarge[] = "the volume is larger than an order can be";

/// One row of the table of operations.
struct CBasketOperation {
    int number; ///< opType of the call, with 33 as 25 and 34 as 26
    EOperationType op;
    bool isFuture;
    bool sharesByWeight; ///< money and ratios of stocks are divided over the rows by weight
};

constexpr CBasketOperation kOperations[] = {
    {25, EOperationType::Buy, false, true},
    {26, EOperationType::Sell, false, true},
    {27, static_cast<EOperationType>(20), false, true},
    {28, static_cast<EOperationType>(21), false, true},
    {29, static_cast<EOperationType>(22), false, true},
    {31, static_cast<EOperationType>(24), false, true},
    {36, EOperationType::Sell, false, false},
    {40, static_cast<EOperationType>(0), true, true},
    {43, static_cast<EOperationType>(3), true, true},
    {46, static_cast<EOperationType>(6), true, true},
    {47, static_cast<EOperationType>(7), true, true},
    {48, static_cast<EOperationType>(8), true, true},
    {49, static_cast<EOperationType>(9), true, true},
};
/// Each row of the basket has its own operation.
constexpr CBasketOperation kByRow = {-1, unsetEnum<EOperationType>(), false, false};

const CBasketOperation& operationOf(int number) {
    const auto found = std::find_if(std::begin(kOperations), std::end(kOperations),
                                    [&](const CBasketOperation& row) { return row.number == number; });
    return found == std::end(kOperations) ? kByRow : *found;
}

/// A row of the basket whose instrument is known.
struct CComposeRow {
    CInstrumentDetailPtr detail;
    int volume = 0;
    double weight = 0;
    EOperationType op = unsetEnum<EOperationType>();
    boost::shared_ptr<CQuoteRequest> quoteRequest; ///< held until the end of the call
};

/// The state of one call.
struct CCompose {
    CFuncRun run;
    const CBasketOperation& operation;
    std::vector<CComposeRow> rows{};
    double totalWeight = 0;
    std::vector<std::int64_t> accountVolumes{}; ///< of the current row, one for each account
    CLeftOut leftOut{};
    bool isNoted = false; ///< the current row is in leftOut

    bool isTradeType(EOrderStrategyTradeType type) const {
        return run.param.m_nTradeType == static_cast<int>(type);
    }
    /// Notes the current row once, also if it is left out for several accounts.
    void leaveOut(const char* cause) {
        if (!isNoted) leftOut.add(run.code, cause);
        isNoted = true;
    }
};

/// A basket of stocks may also be traded on accounts of margin trading.
void takeBasketAccounts(CCompose& basket) {
    CFuncRun& run = basket.run;
    if (run.strategy.m_eTradeType != EOrderStrategyTradeType::Basket) return takeAccounts(run);
    takeAccountsOf(run, EQDBrokerType::Stock);
    if (run.accounts.empty()) takeAccountsOf(run, EQDBrokerType::Credit);
}

ESettingSlot slotOf(const CCompose& basket) {
    if (basket.operation.isFuture) return ESettingSlot::FutureBasket;
    if (basket.isTradeType(EOrderStrategyTradeType::HGT)) return ESettingSlot::FunctionHGT;
    if (basket.isTradeType(EOrderStrategyTradeType::SGT)) return ESettingSlot::FunctionSGT;
    return ESettingSlot::StockBasket;
}

/// The instrument of a row, with its full code. Null, with a note for the audit, if it cannot be traded.
CInstrumentDetailPtr findRowInstrument(CCompose& basket, QString& code) {
    const QString named = code;
    const bool isFuture = basket.operation.isFuture;
    if (isFuture ? !hostCall<&CExchangeClient::hasFuture>(code) : !resolveFullCode(code)) {
        basket.leftOut.add(named, isFuture ? kNotListed : leftout::kNotTradable);
        return nullptr;
    }
    CInstrumentDetailPtr detail = hostCall<&CExchangeClient::getCodeInfo>(code);
    if (!detail) basket.leftOut.add(named, leftout::kUnknownInstrument);
    return detail;
}

bool isSharedByWeight(const CCompose& basket) {
    const COrderStrategyParam& strategy = basket.run.strategy;
    return (strategy.m_bUseAmount || strategy.m_bByPercent) && basket.operation.sharesByWeight;
}

/// A weight below zero would give the other rows more than the whole money. Checked if the command guard is
/// on.
bool isWeightRefused(const CCompose& basket, double weight) {
    return isSharedByWeight(basket) && isCommandGuardOn() && !(std::isfinite(weight) && weight >= 0);
}

/// Subscribes to the quotes of all rows first, so that quotes of later rows arrive while earlier rows are
/// processed.
void collectRows(CCompose& basket) {
    const COrderStrategyParam& strategy = basket.run.strategy;
    for (const COrderSingleParam& line : basket.run.param.m_orders) {
        if (line.m_nVolume < 1 && !strategy.m_bUseAmount) {
            basket.leftOut.add(line.m_strCode, kNoVolume);
            continue;
        }
        QString code = line.m_strCode;
        if (isWeightRefused(basket, line.m_dWeight)) {
            basket.leftOut.add(code, kBadWeight);
            continue;
        }
        const CInstrumentDetailPtr detail = findRowInstrument(basket, code);
        if (!detail) continue;
        const EOperationType op =
            isUnset(basket.run.op) ? static_cast<EOperationType>(line.m_eOperationType) : basket.run.op;
        basket.rows.push_back({detail, line.m_nVolume, line.m_dWeight, op, requestQuotes(code)});
    }
    if (!isSharedByWeight(basket)) return;
    for (const CComposeRow& row : basket.rows)
        basket.totalWeight += row.weight;
}

void startRow(CCompose& basket, const CComposeRow& row) {
    CFuncRun& run = basket.run;
    run.code = qdStockKey(QString::fromStdString(row.detail->m_strMarket),
                          QString::fromStdString(row.detail->m_strCode));
    run.detail = row.detail;
    run.record = CCodeOrderParam();
    run.record.m_eHedgeFlag = EHedge_Flag_Type::Speculation;
    run.record.m_ePositionType = run.strategy.m_ePositionType;
    run.record.m_stock = {row.detail->m_strMarket, row.detail->m_strCode, row.detail->m_strName, {}};
    startRecord(run, row.op);
    run.priceData = waitForQuote(run.code, run.priceType(), row.op, EQuoteWait::UnlessSpecified);
    run.calcPrice = run.orderPrice = kUnsetDouble;
    run.volume = 0;
    basket.accountVolumes.clear();
    basket.isNoted = false;
}

bool isBasketStock(const CStockInfo& stock) {
    static constexpr int kTypes[] = {100003, 100016, 100004, 100024};
    const auto hasType = [&](int type) {
        return knservice::isTypedStock(type, stock.m_strMarket, stock.m_strCode, {});
    };
    return std::any_of(std::begin(kTypes), std::end(kTypes), hasType) || isPricedAtPar(stock);
}

/// Only baskets of stocks and of futures limit the types of their instruments.
bool isAllowedType(const CCompose& basket) {
    const CStockInfo& stock = basket.run.stock();
    if (basket.operation.isFuture) return isFuturesMarket(stock.m_strMarket);
    return !basket.isTradeType(EOrderStrategyTradeType::Basket) || isBasketStock(stock);
}

bool mayTradeRow(CCompose& basket) {
    const bool isOff = isSuspended(basket.run);
    if (!isOff && isAllowedType(basket)) return true;
    basket.leaveOut(isOff ? leftout::kSuspended : leftout::kWrongType);
    return false;
}

/// The row's part of a figure of the whole basket: by weight, or equal parts if there are no weights.
double partOf(const CCompose& basket, const CComposeRow& row, double whole) {
    if (basket.totalWeight == 0.0) return whole / static_cast<double>(basket.rows.size());
    return row.weight * whole / basket.totalWeight;
}

/// The volume of the row's part of the account's assets. 0 if the assets are not known.
std::int64_t stockRatioVolume(const CCompose& basket, const CComposeRow& row, const std::string& key) {
    const double asset = getBasketAsset(key);
    if (isInvalidPrice(asset)) return 0;
    const CFuncRun& run = basket.run;
    return wholeNumber(partOf(basket, row, asset * run.strategy.m_dPercent) / run.calcPrice);
}

/// The volume of one account, for units that depend on the account.
std::int64_t accountVolume(const CCompose& basket, const CComposeRow& row, const std::string& key) {
    const CFuncRun& run = basket.run;
    const COrderStrategyParam& strategy = run.strategy;
    if (!strategy.m_bByPercent)
        return getAccountFuturesNum(key, run.code, finiteOrUnset(strategy.m_dAmount), run.calcPrice);
    if (!basket.operation.isFuture) return stockRatioVolume(basket, row, key);
    return getAccountPercentNum(key, run.op, run.param.m_nOrderType, run.code, run.calcPrice,
                                strategy.m_dPercent);
}

void takeAccountVolumes(CCompose& basket, const CComposeRow& row) {
    for (const CAccountInfoPtr& account : basket.run.accounts)
        basket.accountVolumes.push_back(
            account ? accountVolume(basket, row, hostCall<&CAccountInfo::getKey>.on(*account)) : 0);
}

/// The volume of money for a row of stocks, for all accounts.
std::int64_t stockMoneyVolume(const CCompose& basket, const CComposeRow& row) {
    const CFuncRun& run = basket.run;
    const double price = isPricedAtPar(run.stock()) ? knservice::kParPrice : run.calcPrice;
    return wholeNumber(partOf(basket, row, finiteOrUnset(run.strategy.m_dAmount)) / price);
}

/// Works out the volumes of the row. Without a quote they stay 0. False, with a note, if the row is left out.
bool takeRowVolumes(CCompose& basket, const CComposeRow& row) {
    CFuncRun& run = basket.run;
    const COrderStrategyParam& strategy = run.strategy;
    run.unit = minUnitOf(run);
    if (!run.priceData) return true;
    run.calcPrice = calcPriceOf(run.priceData, run.priceType(), run.op, 0);
    if (isInvalidPrice(run.calcPrice)) run.calcPrice = fallbackPriceOf(run.priceData);
    if (strategy.m_bByPercent || (strategy.m_bUseAmount && basket.operation.isFuture))
        takeAccountVolumes(basket, row);
    else if (strategy.m_bUseAmount)
        run.volume = stockMoneyVolume(basket, row);
    else
        run.volume = static_cast<std::int64_t>(row.volume) * strategy.m_nVolume;
    if (run.volume >= 0) return true;
    basket.leaveOut(leftout::kNegativeVolume);
    return false;
}

bool isRowPriceUsable(const CFuncRun& run, EOperationType op) {
    if (!run.priceData) return false;
    if (run.priceType() == EPriceType::NoQuote) return true;
    const double price = originPriceOf(run.priceData, run.priceType(), op);
    return !isInvalidPrice(price) && !isZero(price);
}

/// A row without a usable price is reported, and the volume that its accounts share becomes 0.
void dropUnpricedVolume(CFuncRun& run, EOperationType op) {
    if (isRowPriceUsable(run, op)) return;
    fail(run, kNoRowPrice, {run.code, priceTypeText(run)});
    run.volume = 0;
}

/// The price at which the host is asked how much an account can order.
double priceOfUsable(const CFuncRun& run) {
    const double price = calcPriceOf(run.priceData, run.priceType(), run.op, 0);
    return run.priceData && isInvalidPrice(price) ? finiteOrUnset(run.priceData->m_dLastPrice) : price;
}

/// A volume that no record can hold is not rounded, because the rounded one could be held.
std::int64_t legalVolume(const CFuncRun& run, std::int64_t volume, std::int64_t can) {
    return isStorable(volume) ? calcRightOrderVolume(run.op, volume, run.unit, can) : volume;
}

/// Adds the record of one account. A common volume that is rounded for an account is the volume of the next
/// accounts too. Returns false if the call must end.
bool addRowRecord(CCompose& basket, const CComposeRow& row, std::size_t index, double price) {
    CFuncRun& run = basket.run;
    const CAccountInfoPtr& account = run.accounts[index];
    const std::string key = hostCall<&CAccountInfo::getKey>.on(*account);
    const std::int64_t can = run.priceData ? getCanOrderVolume(key, run.op, run.code, price) : 0;
    run.volume = legalVolume(run, run.volume, can);
    const bool isByAccount = basket.accountVolumes.size() == run.accounts.size();
    const std::int64_t volume =
        isByAccount ? legalVolume(run, basket.accountVolumes[index], can) : run.volume;
    CCodeOrderParam record = run.record;
    stampRecord(run, row.op, account, static_cast<int>(std::min(run.volume, kLargestVolume)),
                run.strategy.m_ePositionType, record);
    if (!hasPrice(record)) return failModelPrice(run, record);
    if (volume < 0 || !isStorable(volume)) {
        basket.leaveOut(volume < 0 ? leftout::kNegativeVolume : kTooLarge);
        return true;
    }
    record.m_nVolume = static_cast<int>(volume);
    run.records.push_back(std::move(record));
    return true;
}

/// Processes one row from the quote to the records. False ends the call.
bool placeRow(CCompose& basket, const CComposeRow& row) {
    CFuncRun& run = basket.run;
    startRow(basket, row);
    if (!mayTradeRow(basket) || !takeRowVolumes(basket, row)) return true;
    dropUnpricedVolume(run, row.op);
    const double price = priceOfUsable(run);
    for (std::size_t i = 0; i < run.accounts.size(); ++i) {
        if (run.accounts[i] && !addRowRecord(basket, row, i, price)) return false;
    }
    return true;
}

/// Only the first record is checked.
bool checkFirstPrice(const CFuncRun& run) {
    if (run.records.empty()) return true;
    const EPriceType type = run.records.front().m_ePriceType;
    if (!isBuy(run.op)) return type >= EPriceType::Sell1 || fail(run, kBadSellPrice);
    return type < EPriceType::Buy2 || type > EPriceType::Buy5 || fail(run, kBadBuyPrice);
}

bool checkCompose(CCompose& basket) {
    takeBasketAccounts(basket);
    basket.run.op = basket.operation.op;
    takeSetting(basket.run, slotOf(basket));
    collectRows(basket);
    const bool isPlaced = std::all_of(basket.rows.begin(), basket.rows.end(),
                                      [&](const CComposeRow& row) { return placeRow(basket, row); });
    return isPlaced && isCmdUser() && checkFirstPrice(basket.run);
}

/// The numbers that never have the flag of the strategy.
bool mayHaveFlag(int number) {
    static constexpr int kWithoutFlag[] = {26, 28, 31, 34, 35, 36};
    return std::find(std::begin(kWithoutFlag), std::end(kWithoutFlag), number) == std::end(kWithoutFlag);
}

} // namespace

void orderCompose(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                  const CFuncReporter& reporter) {
    constexpr int kAnyBasket = 2101;
    const int number = shownNumber(param.m_nOpType, kAnyBasket);
    CCompose basket{{{}, param, strategy, reporter}, operationOf(number)};
    if (!checkCompose(basket)) return;
    CFuncRun& run = basket.run;
    const COrderComandParamPtr command = makeCommand(run, EQdTraderType::Basket);
    command->m_strAlgoParam = param.m_strTradeKey;
    command->m_bCommandFlag = strategy.m_bCommandFlag && mayHaveFlag(number);
    command->m_strStrategyName = param.m_strStrategyName;
    command->m_strOrderCode = basketNameOf(param);
    const bool isHedged = luawrapper::isOrderSwitchOn(kComposeHedgeSwitch) && strategy.m_bHedgeBasket;
    command->m_eHedgeType = isHedged ? EQdHedgeType::Hedge : EQdHedgeType::Compose;
    if (isHedged) command->m_extra = hedgeDocument(run.op, strategy);
    const bool isSent = sendCommand(run, command,
                                    isHedged ? "placeCommands: [orderservice] basket hedge."
                                             : "placeCommands: [orderservice] basket compose.");
    if (isSent) basket.leftOut.report();
}

} // namespace TC
