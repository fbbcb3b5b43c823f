// Baskets: many instruments in one order, by volume, by target position, or by money and weight. A basket can
// also sell all that the accounts hold.
#include "orderservice/base/Text.h"
#include "orderservice/check/AccountLookup.h"
#include "orderservice/check/CheckFrame.h"
#include "orderservice/check/CodeLookup.h"
#include "orderservice/check/CommandGuard.h"
#include "orderservice/check/LeftOutRows.h"
#include "orderservice/check/PositionExchange.h"
#include "orderservice/check/Positions.h"
#include "orderservice/check/Reports.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/OrderTypes.h"
#include "orderservice/records/Portfolio.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

namespace TC {
namespace {

/// The reports of target positions that are left out if the command guard is on.
constexpr char kUnsetTarget[] = "[%1]　通道号: %2, 调仓合约 [%3] 没有目标数量, 未下单!";
constexpr char kTargetTooLarge[] = "[%1]　通道号: %2, 调仓合约 [%3] 数量超出范围, 未下单!";

/// The reasons for rows that are left out without a message, for the audit.
using leftout::kNegativeVolume;
using leftout::kNotTradable;
using leftout::kSuspended;
using leftout::kUnknownInstrument;
using leftout::kWrongType;
constexpr char kHeldTooLarge[] = "the position is larger than an order can be";

/// Orders on the star market have a minimum volume. A volume below it is reported for each account.
bool isBelowStarLeast(const CCheckRun& run, int volume) {
    constexpr int kStarLeast = 200;
    if (volume >= kStarLeast || !isStarMarket(run.stock())) return false;
    failCheck(run, QStringLiteral("[%1] [通道%2] [备注:%3] 科创板合约下单量最小为200!"),
              QString::fromStdString(run.order.m_strRemark));
    return true;
}

/// Baskets have their own sequence of steps, which includes some of the shared steps.
constexpr CFamilyCheck basketCheck() {
    CFamilyCheck family{EOrderStrategyTradeType::Basket};
    family.m_eQuoteWait = EQuoteWait::AlsoSpecified;
    family.m_pfnIsLeftOut = isBelowStarLeast;
    return family;
}

constexpr CFamilyCheck kBasketCheck = basketCheck();

/// A row of the order whose instrument is known.
struct CBasketRow {
    CInstrumentDetailPtr detail;
    int volume = kUnsetInt;
    double weight = 0.0;
    double price = kUnsetDouble; ///< set if the order specifies its prices
    EOperationType op = unsetEnum<EOperationType>();
    boost::shared_ptr<CQuoteRequest> quoteRequest; ///< held until the end of the check
};

/// The state of a basket during its check.
struct CBasket {
    QVector<COrderSingleParam>& lines; ///< the rows that the order names
    CCheckRun run;
    int multiplier;
    double totalWeight = 0.0;
    std::vector<CBasketRow> rows{};
    CLeftOut leftOut{};

    /// Leaves out the current row of the run.
    void leaveOut(const char* cause) { leftOut.add(run.code, cause); }
};

/// Whether the order's money is divided over the rows in this file. For a target position the volumes were
/// already calculated in takeTargets.
bool sharesMoney(const CBasket& basket) {
    return basket.run.strategy.m_bUseAmount && isBasketHeaderOrder(basket.run.order.m_nOrderType);
}

bool checkSwitch(const CBasket& basket) {
    const int number = basket.run.order.m_nOrderType;
    const bool needsSwitch = number == kOrderBasketHeader || number == kOrderBasketWhole;
    if (!needsSwitch || luawrapper::isOrderSwitchOn(kComposeTradeSwitch)) return true;
    return failCheck(basket.run, QStringLiteral("[%1]　通道号: %2, 下单指令不合法，一键买卖授权已关闭!"));
}

bool checkRowsGiven(const CBasket& basket) {
    if (!basket.lines.isEmpty() || basket.run.order.m_nOrderType == kOrderBasketSell) return true;
    return failCheck(basket.run, QString::fromUtf8(kBadOrderNumber));
}

bool failParams(const CBasket& basket) {
    return failCheck(basket.run, QString::fromUtf8(kBadParams));
}

/// Whether there is an amount, and weights to divide it by; reports if not. An amount that is not set must
/// not be divided, because its number would give each row an unwanted volume. With an infinite weight the
/// other rows would get nothing; if they are targets, all their holdings would be sold. An order without rows
/// has nothing to divide.
bool checkMoney(const CBasket& basket) {
    const int number = basket.run.order.m_nOrderType;
    const COrderStrategyParam& strategy = basket.run.strategy;
    const bool isShared = isBasketHeaderOrder(number) || isTargetOrder(number);
    if (!strategy.m_bUseAmount || !isShared || basket.run.order.m_bAll || basket.lines.isEmpty()) return true;
    double sum = 0;
    for (const COrderSingleParam& row : qAsConst(basket.lines))
        sum += row.m_dWeight;
    const bool isGood = std::isfinite(sum) && !isInvalidPrice(finiteOrUnset(strategy.m_dAmount));
    return isGood || failParams(basket);
}

/// Refuses targets below zero, because they would sell more than is held.
bool checkTargets(const CBasket& basket) {
    const auto isGood = [&](const COrderSingleParam& row) {
        return static_cast<std::int64_t>(row.m_nVolume) * basket.multiplier >= 0;
    };
    const QVector<COrderSingleParam>& rows = basket.lines;
    return basket.run.order.m_bAll || std::all_of(rows.begin(), rows.end(), isGood) || failParams(basket);
}

/// The codes whose target has no volume.
QSet<QString> unsetTargets(const QVector<COrderSingleParam>& rows) {
    QSet<QString> codes;
    for (const COrderSingleParam& row : rows) {
        if (isUnset(row.m_nVolume)) codes.insert(row.m_strCode);
    }
    return codes;
}

/// If the command guard is on, removes the rows whose volume is not one that an order can have, with one
/// report each. These are targets without a volume, for which exchangePosition would buy up to the not-set
/// number, and differences that do not fit an int. Without the guard, the not-set volume of a target is
/// treated as its number.
void leaveOutUnset(CBasket& basket, const QSet<QString>& unsetCodes) {
    if (!isCommandGuardOn()) return;
    const auto isLeftOut = [&](const COrderSingleParam& row) {
        const bool isUnsetTarget = unsetCodes.contains(row.m_strCode);
        if (!isUnsetTarget && !isUnset(row.m_nVolume)) return false;
        failCheck(basket.run, QString::fromUtf8(isUnsetTarget ? kUnsetTarget : kTargetTooLarge),
                  row.m_strCode);
        return true;
    };
    QVector<COrderSingleParam>& rows = basket.lines;
    rows.erase(std::remove_if(rows.begin(), rows.end(), isLeftOut), rows.end());
}

bool takeTargets(CBasket& basket) {
    if (!isTargetOrder(basket.run.order.m_nOrderType)) return true;
    const COrderStrategyParam& strategy = basket.run.strategy;
    if (strategy.m_bUseAmount) {
        basket.multiplier = 1;
        calcVolumnByWeight(basket.lines, strategy.m_dAmount);
    }
    if (!checkTargets(basket)) return false;
    const QSet<QString> unset = unsetTargets(basket.lines);
    exchangePosition(basket.run.accounts.front(), basket.lines, basket.multiplier);
    leaveOutUnset(basket, unset);
    return true;
}

/// Returns the row's instrument and replaces the code by the full code. If the row names no tradable
/// instrument, notes it for the audit and returns null.
CInstrumentDetailPtr findInstrument(CBasket& basket, QString& code) {
    const QString named = code;
    if (!resolveStockCode(code, EKeyJoin::Plain)) {
        basket.leftOut.add(named, kNotTradable);
        return nullptr;
    }
    CInstrumentDetailPtr detail = hostCall<&CExchangeClient::getCodeInfo>(code);
    if (!detail) basket.leftOut.add(named, kUnknownInstrument);
    return detail;
}

/// Collects the rows that name a known instrument. Subscribes to the quotes of all rows first, so that quotes
/// of later rows arrive while earlier rows are processed.
void collectRows(CBasket& basket) {
    CCheckRun& run = basket.run;
    basket.rows.reserve(static_cast<std::size_t>(basket.lines.size()));
    for (const COrderSingleParam& row : qAsConst(basket.lines)) {
        if (row.m_nVolume < 1 && !run.strategy.m_bUseAmount) {
            if (row.m_nVolume < 0) basket.leftOut.add(row.m_strCode, kNegativeVolume);
            continue;
        }
        QString code = row.m_strCode;
        const CInstrumentDetailPtr detail = findInstrument(basket, code);
        if (!detail) continue;
        CBasketRow known;
        known.detail = detail;
        known.volume = row.m_nVolume;
        known.weight = row.m_dWeight;
        if (run.setting.m_ePriceType == EPriceType::Specified) known.price = row.m_dPrice;
        known.op = isUnset(run.op) ? static_cast<EOperationType>(row.m_eOperationType) : run.op;
        known.quoteRequest = requestQuotes(code);
        basket.rows.push_back(std::move(known));
    }
    if (!sharesMoney(basket)) return;
    for (const CBasketRow& row : basket.rows)
        basket.totalWeight += row.weight;
}

bool mayStandInABasket(const CStockInfo& stock) {
    return std::any_of(std::begin(knservice::kBasketTypes), std::end(knservice::kBasketTypes), [&](int type) {
        return knservice::isTypedStock(type, stock.m_strMarket, stock.m_strCode, {});
    });
}

double calcPriceOf(const CCheckRun& run, EOperationType op) {
    return calcPriceOf(run.priceData, run.setting.m_ePriceType, op,
                       static_cast<int>(run.setting.m_eOrderType));
}

/// Calculation price and order price use the order's operation, even if the row has another operation.
void takeRowPrices(CCheckRun& run, const CBasketRow& row) {
    if (run.setting.m_ePriceType == EPriceType::Specified) {
        run.calcPrice = run.orderPrice = finiteOrUnset(row.price);
        return;
    }
    run.calcPrice = calcPriceOf(run, run.op);
    run.orderPrice = orderPriceOf(run.priceData, run.setting.m_ePriceType, run.op,
                                  static_cast<int>(run.setting.m_eOrderType));
}

/// The row's volume, not rounded and not limited to an int.
double rowVolume(const CBasket& basket, const CBasketRow& row) {
    const CCheckRun& run = basket.run;
    if (run.priceData && sharesMoney(basket)) {
        const double amount = run.strategy.m_dAmount;
        const double price =
            isInvalidPrice(run.calcPrice) ? finiteOrUnset(run.priceData->m_dLastPrice) : run.calcPrice;
        if (basket.totalWeight == 0.0) return amount / static_cast<double>(basket.rows.size()) / price;
        return row.weight * amount / basket.totalWeight / price;
    }
    if (isTargetOrder(basket.run.order.m_nOrderType)) return row.volume;
    return static_cast<double>(row.volume) * basket.multiplier;
}

bool isRowPriceUsable(const CCheckRun& run, const CBasketRow& row) {
    if (!run.priceData) return false;
    const EPriceType priceType = run.setting.m_ePriceType;
    if (priceType == EPriceType::Specified) return std::isfinite(row.price);
    if (knservice::isMarketPrice(priceType)) return true;
    const double price = originPriceOf(run.priceData, priceType, row.op);
    return !isInvalidPrice(price) && !isZero(price);
}

/// If the row has no usable price, reports it and sets the volume to 0.
void dropUnpricedVolume(CCheckRun& run, const CBasketRow& row) {
    if (isRowPriceUsable(run, row)) return;
    showCheckFailure(utils::fillText(
        QStringLiteral("[%1]　通道号 [%2] 组合交易中, 证券 [%3] %4无效, 修改下单量为0!"),
        {orderStrategyText(run.order.m_eStrategyType), QString::number(run.strategy.m_nChannel), run.code,
         knPriceTypeToString(run.setting.m_ePriceType, {}, false)}));
    run.volume = 0;
}

/// Reads the sub-account from the account key of a position order: kind and id, joined by "_".
void takeSubAccount(const COrderParam& order, CCodeOrderParam& record) {
    if (order.m_nOrderType != kOrderPosition) return;
    const QStringList parts =
        QString::fromStdString(order.m_strAccountKey).split(QLatin1Char('_'), Qt::SkipEmptyParts);
    if (parts.size() != 2) return;
    record.m_nSubAccountKind = parts[0].toInt();
    record.m_strSubAccountId = parts[1].toStdString();
}

/// Prepares the run for the next instrument. In a basket's record, hedge flag and position type are already
/// set when the host copies the setting into the record. For other families they are set after that.
void startRow(CCheckRun& run, EOperationType op, CStockInfo stock) {
    run.code = qdStockKey(QString::fromStdString(stock.m_strMarket), QString::fromStdString(stock.m_strCode));
    run.record = CCodeOrderParam();
    run.record.m_eHedgeFlag = EHedge_Flag_Type::Speculation;
    run.record.m_ePositionType = run.strategy.m_ePositionType;
    takeSubAccount(run.order, run.record);
    run.record.m_stock = std::move(stock);
    startRecord(run, op);
}

/// Whether a basket can trade the row's instrument now. If not, it is noted for the audit, unless the row has
/// nothing to trade.
bool mayTradeRow(CBasket& basket, const CBasketRow& row) {
    const bool isOff = isSuspended(basket.run);
    if (!isOff && mayStandInABasket(basket.run.stock())) return true;
    const bool isReached = row.volume == 0 && isTargetOrder(basket.run.order.m_nOrderType);
    if (!isReached) basket.leaveOut(isOff ? kSuspended : kWrongType);
    return false;
}

/// Splits the row's volume. If the split fails, notes it for the audit, because no message is shown, and
/// returns false. A volume of zero is not noted.
bool splitRow(CBasket& basket, EOperationType op) {
    CCheckRun& run = basket.run;
    const auto error = splitVolumes(run, op);
    if (run.volumes.size() == run.accounts.size()) return true;
    if (run.volume > 0) {
        basket.leftOut.add(run.code, QStringLiteral("the split over the accounts failed: ") +
                                         QString::fromStdString(error->errorMsg()));
    }
    return false;
}

/// Processes one row from the quote to the records. False ends the check.
bool placeRow(CBasket& basket, const CBasketRow& row) {
    CCheckRun& run = basket.run;
    const EOperationType op = row.op;
    startRow(run, op, {row.detail->m_strMarket, row.detail->m_strCode, row.detail->m_strName, {}});
    run.priceData = waitForQuote(run.code, run.setting.m_ePriceType, op, run.family.m_eQuoteWait);
    if (!mayTradeRow(basket, row)) return true;
    takeRowPrices(run, row);
    const double volume = std::trunc(rowVolume(basket, row));
    if (volume < 0) {
        basket.leaveOut(kNegativeVolume);
        return true;
    }
    run.volume = truncateToInt(volume);
    dropUnpricedVolume(run, row);
    if (isInvalidPrice(run.calcPrice)) run.calcPrice = calcPriceOf(run, op);
    return !splitRow(basket, op) || buildRecords(run, op);
}

bool placeRows(CBasket& basket) {
    basket.run.codes.reserve(basket.run.codes.size() + basket.rows.size() * basket.run.accounts.size());
    return std::all_of(basket.rows.begin(), basket.rows.end(),
                       [&](const CBasketRow& row) { return placeRow(basket, row); });
}

/// Sells one position. False ends the check.
bool sellPosition(CBasket& basket, const CAccountInfoPtr& account,
                  const knservice::CPositionStatics& position) {
    CCheckRun& run = basket.run;
    const EOperationType op = EOperationType::Sell;
    startRow(run, op, {position.m_strMarket, position.m_strCode, position.m_strName, {}});
    run.priceData = waitForQuote(run.code, run.setting.m_ePriceType, op, run.family.m_eQuoteWait);
    if (isSuspended(run)) {
        if (position.m_nAvailableVolume > 0) basket.leaveOut(kSuspended);
        return true;
    }
    run.orderPrice = kUnsetDouble;
    const int volume = truncateToInt(static_cast<double>(position.m_nAvailableVolume));
    // A trading layer could treat a sale with a volume below zero as a purchase.
    if (volume < 0) {
        basket.leaveOut(kNegativeVolume);
        return true;
    }
    CCodeOrderParam record = makeRecord(run, op, account, volume);
    if (!checkRecordPrice(run, record)) return false;
    // A position that is too large for one order is not sold, because selling a part of it is not what the
    // user ordered. Shares bought today give a record of volume 0. The host must refuse it, unless the
    // command guard removes it.
    if (isUnset(volume))
        basket.leaveOut(kHeldTooLarge);
    else
        run.codes.push_back(std::move(record));
    return true;
}

bool sellAccount(CBasket& basket, const CAccountInfoPtr& account) {
    const CPositions positions(*account);
    const auto all = positions.all();
    return std::all_of(all.begin(), all.end(),
                       [&](const auto& position) { return sellPosition(basket, account, *position); });
}

bool sellAll(CBasket& basket) {
    CCheckRun& run = basket.run;
    basket.leftOut = {}; // the rows of the order are not used, so their notes are discarded
    QString accountKey = preparedAccountKey(basket.lines, run.strategy);
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    if (!findOrderAccounts(run.order, run.strategy, accountKey, accounts, ratios)) return false;
    return std::all_of(accounts.begin(), accounts.end(), [&](const CAccountInfoPtr& account) {
        return !account || sellAccount(basket, account);
    });
}

/// Called once for an order that passed. The host's locks are no longer held then.
void reportLeftOut(const CBasket& basket) {
    basket.leftOut.report(basket.run.order.m_nChannel);
}

/// A sale must not use the second to fifth sell price, and a purchase must not use the second to fifth buy
/// price. Only the first record is checked.
bool checkFirstPrice(const CCheckRun& run) {
    if (run.codes.empty()) return true;
    const CCodeOrderParam& first = run.codes.front();
    const EPriceType priceType = first.m_ePriceType;
    if (!isBuy(first.m_eOperationType)) {
        if (priceType < EPriceType::Sell5 || priceType > EPriceType::Sell2) return true;
        return failCheck(run, QStringLiteral("[%1]　通道号: %2, 组合交易卖出不允许报卖二到卖五的价格!"));
    }
    if (priceType < EPriceType::Buy2 || priceType > EPriceType::Buy5) return true;
    return failCheck(run, QStringLiteral("[%1]　通道号: %2, 组合交易买入不允许报买二到买五的价格!"));
}

} // namespace

bool checkBasketRows(const COrderParam& order, QVector<COrderSingleParam>& rows,
                     const COrderStrategyParam& strategy, std::vector<CCodeOrderParam>& codes,
                     std::map<std::string, double>& weights) {
    CBasket basket{rows, {{}, kBasketCheck, order, strategy, codes, weights}, strategy.m_nVolume};
    if (!checkOrderNumber(basket.run) || !checkRowsGiven(basket) || !checkSwitch(basket) ||
        !resolveAccounts(basket.run)) {
        return false;
    }
    if (!checkMoney(basket) || !takeTargets(basket)) return false;
    takeSetting(basket.run);
    collectRows(basket);
    const bool isPlaced = order.m_bAll ? sellAll(basket) : placeRows(basket);
    if (!isPlaced || !checkFirstPrice(basket.run)) return false;
    reportLeftOut(basket);
    return true;
}

bool checkBasket(const COrderParam& order, const COrderStrategyParam& strategy,
                 std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    QVector<COrderSingleParam> rows = order.m_orders; // shared until target positions replace them
    return checkBasketRows(order, rows, strategy, codes, weights);
}

} // namespace TC
