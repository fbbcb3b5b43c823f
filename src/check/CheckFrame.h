#pragma once

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>

#include <map>
#include <string>
#include <vector>

namespace TC {

struct CCheckRun;

/// Message for parameters from which no order can be made. Nearly all families also use it for an order of
/// several lines.
inline constexpr char kBadParams[] = "[%1]　通道号: %2, 下单参数不合法!";
/// Message for an order number outside the family. Some families also use it for lines that do not fit the
/// order number.
inline constexpr char kBadOrderNumber[] = "[%1]　通道号: %2, 下单指令不合法!";
/// Message of nearly all families for a price that cannot be used, for failPrice: %2 is the code, %3 the
/// price type.
inline constexpr char kBadStockPrice[] = "[%1]　证券 [%2] %3无效, 无法下单!";

/// How a non-empty setting text of an order is used.
enum class ESettingText {
    OrderKindThenPlain, ///< the setting gets the order's kind; the text is read unless that kind is an
                        ///< algorithm
    PlainOnly, ///< the text is read unless the order's kind is an algorithm; the setting keeps its own kind
    Always,    ///< the text is read for every kind; the setting keeps its own kind
};

/// Whether an order that specifies its price waits for a quote.
enum class EQuoteWait {
    UnlessSpecified, ///< it does not wait
    AlsoSpecified,   ///< it waits until there is any quote
};

/// Whether the instrument is passed to the host's split of the volume.
enum class ESplitInstrument { Named, Unnamed };

/// Whether the price can be used. If not, it is reported with the message that nearly all families share.
bool checkStockPrice(const CCheckRun& run);
/// The volume that the run's amount of money buys, without rounding to units.
int plainVolumeOfAmount(const CCheckRun& run);

/// The rules of one product family for the shared check. The defaults are right for most families; a family
/// sets only the members that differ. A member has an effect only if the family's check runs the step that
/// uses it. Order-type numbers and the setting slot are in records/Families.h. In message texts %1 is the
/// source and %2 the channel; further arguments are documented at each text. A null function means that the
/// family does not have this step.
struct CFamilyCheck {
    EOrderStrategyTradeType m_eTradeType;
    /// The message if an order has more lines than the family allows.
    const char* m_pszTooManyLines = kBadParams;
    ESettingText m_eSettingText = ESettingText::Always;
    EQuoteWait m_eQuoteWait = EQuoteWait::UnlessSpecified;
    ESplitInstrument m_eSplitInstrument = ESplitInstrument::Named;
    /// Copies the line's values into the setting, before the setting text is read.
    void (*m_pfnLineIntoSetting)(const COrderSingleParam& line, COrderSetting& setting) = nullptr;
    /// Resolves run.code, which comes from the order's line. If it cannot, it reports and returns false.
    /// Null: the code is used unchanged.
    bool (*m_pfnResolveCode)(CCheckRun& run) = nullptr;
    /// Whether run.code can be traded, no matter whether it comes from the order or the strategy. If not, it
    /// reports.
    bool (*m_pfnCheckCode)(const CCheckRun& run) = nullptr;
    /// Whether the price can be used; if not, it reports. Null: every price is accepted, also a missing one.
    bool (*m_pfnCheckPrice)(const CCheckRun& run) = checkStockPrice;
    /// The volume that an amount of money buys. Null: an amount has no effect.
    int (*m_pfnVolumeOfAmount)(const CCheckRun& run) = plainVolumeOfAmount;
    /// Checks the volumes that the split returned. If they are not acceptable, it reports and returns false.
    bool (*m_pfnCheckVolumes)(const CCheckRun& run) = nullptr;
    /// Whether a volume is left out of the records; if so, it reports the reason.
    bool (*m_pfnIsLeftOut)(const CCheckRun& run, int volume) = nullptr;
    /// Final changes to a record of that volume, before its price is checked.
    void (*m_pfnFinishRecord)(const CCheckRun& run, int volume, CCodeOrderParam& record) = nullptr;
};

/// The state of one order during its check. The steps below fill the members from top to bottom.
struct CCheckRun {
    const CFamilyCheck& family;
    const COrderServiceBase& service;
    const COrderParam& order;
    const COrderStrategyParam& strategy;
    std::vector<CCodeOrderParam>& codes;
    std::map<std::string, double>& weights;

    std::vector<CAccountInfoPtr> accounts{};
    std::vector<double> ratios{};
    EOperationType op = unsetEnum<EOperationType>();
    COrderSetting setting{};
    QString code{};
    CInstrumentDetailPtr detail{};                   ///< null if the instrument is unknown
    boost::shared_ptr<CQuoteRequest> quoteRequest{}; ///< held so that quotes continue to arrive
    CCodeOrderParam record{};                        ///< the values that all records of the order share
    CPriceDataPtr priceData{};
    double calcPrice = kUnsetDouble;
    double orderPrice = kUnsetDouble;
    int volume = kUnsetInt;
    std::vector<int> volumes{};

    const CStockInfo& stock() const { return record.m_stock; }
    /// The order's only line, or null if it has no line.
    const COrderSingleParam* line() const {
        return order.m_orders.isEmpty() ? nullptr : &order.m_orders.first();
    }
};

/// Runs all steps of the check for a family that trades single instruments. True: run.codes got the records
/// that could be built, possibly none. False: one failure was reported.
bool runFamilyCheck(CCheckRun run);

/// The steps of the check. A family with its own sequence calls the steps that it shares. A step that fails
/// reports once and returns false.

bool checkOrderNumber(const CCheckRun& run);
bool checkLineCount(const CCheckRun& run);
bool resolveAccounts(CCheckRun& run);
void takeSetting(CCheckRun& run);
bool resolveCode(CCheckRun& run);
void loadInstrument(CCheckRun& run);
/// Reads the quote. Waits up to two seconds for a usable one, depending on the family's EQuoteWait. A missing
/// price is not a failure here.
void waitForQuote(CCheckRun& run);
void takePrices(CCheckRun& run);
void takeVolume(CCheckRun& run);
bool splitOverAccounts(CCheckRun& run);
/// Builds a record of the operation for each account whose volume is above zero. run.volumes must have one
/// volume for each account.
bool buildRecords(CCheckRun& run, EOperationType op);
/// The first steps, which all families except baskets share: order number, line count, accounts, setting,
/// code and instrument.
bool beginCheck(CCheckRun& run);
/// The remaining steps after beginCheck.
bool finishCheck(CCheckRun& run);

/// Parts of the steps, for families that combine them differently.

/// Sets instrument, operation and the user's name in run.record, which is copied for each record of the
/// order.
void startRecord(CCheckRun& run, EOperationType op, CStockInfo stock);
/// The prices of a quote for the checks: not set if there is no quote or if the price is not finite.
double originPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op);
double calcPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op, int orderType);
double orderPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op, int orderType);
double fallbackPriceOf(const CPriceDataPtr& quote);
/// Whether the quote has a price of the type. For the types Specified and NoQuote, which do not take the
/// price from the quote, any quote is usable.
bool isQuoteUsable(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op);
/// Returns the quote of a key. Waits up to two seconds until it has a price of the type.
CPriceDataPtr waitForQuote(const QString& stockKey, EPriceType priceType, EOperationType op, EQuoteWait rule);
/// Splits the run's volume. The number of resulting volumes is not checked. The returned error gives the
/// reason of a failure. If the run's volume is below 0, no resulting volume is above 0.
boost::shared_ptr<utils::KNError> splitVolumes(CCheckRun& run, EOperationType op);
/// Whether there is one volume for each account; if not, reports a failed split.
bool checkSplitCount(const CCheckRun& run, std::size_t count, const utils::KNError& error);
/// Reports a failed split. Always returns false.
bool failSplit(const CCheckRun& run, const utils::KNError& error);
/// Returns a copy of the run's record, with setting, price, account and volume filled in.
CCodeOrderParam makeRecord(const CCheckRun& run, EOperationType op, const CAccountInfoPtr& account,
                           int volume);
/// Returns false, after a report, if the record has a specified price that is zero or not finite.
bool checkRecordPrice(const CCheckRun& run, const CCodeOrderParam& record);

/// Whether the price can be used; reports nothing.
bool checkPriceType(const CCheckRun& run);
/// Reports a price that cannot be used. %1 of the pattern is the source's label, %2 the code, %3 the name of
/// the price type for codeForWord. Always returns false.
bool failPrice(const CCheckRun& run, const QString& pattern, const std::string& codeForWord);

/// The volume that the strategy's amount buys at the run's price, not rounded to units. Not set if the amount
/// or the price cannot be used. fixedPrice: if set, it replaces the price in the division; the run's price
/// must still be usable.
int volumeOfAmount(const CCheckRun& run, double fixedPrice = kUnsetDouble);
/// Rounds down to whole trading units of the run's instrument. A volume that is not set stays not set.
int roundToUnit(const CCheckRun& run, int volume);

/// Reports a failure of the run. %1 of the pattern is the source's label, %2 the channel, %3 the argument.
/// Always returns false.
bool failCheck(const CCheckRun& run, const QString& pattern, const QString& argument = {});
/// Reports a code that is not a tradable instrument. Always returns false.
bool failCode(const CCheckRun& run);

/// The name used to look up the accounts of an order: the strategy's account name, or in table mode the
/// account of the first line.
QString preparedAccountKey(const COrderParam& order, const COrderStrategyParam& strategy);

} // namespace TC
