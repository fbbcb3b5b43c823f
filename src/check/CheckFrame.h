#pragma once

#include "orderservice/base/KNError.h"
#include "orderservice/base/Unset.h"
#include "orderservice/check/FamilyRules.h"
#include "orderservice/check/InstrumentSteps.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/OrderSetting.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <cstddef>
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

/// The state of one order during its check: the instrument that is traded, and what the order adds to it. The
/// steps below fill the members from top to bottom.
struct CCheckRun : CInstrumentRun {
    const CFamilyCheck& family;
    const COrderParam& order;
    const COrderStrategyParam& strategy;
    std::vector<CCodeOrderParam>& codes;
    std::map<std::string, double>& weights;

    std::vector<CAccountInfoPtr> accounts{};
    std::vector<double> ratios{};
    int volume = kUnsetInt;
    std::vector<int> volumes{};

    /// The order's only line, or null if it has no line.
    const COrderSingleParam* line() const {
        return order.m_orders.isEmpty() ? nullptr : &order.m_orders.first();
    }
};

/// Runs all steps of the check for a family that trades single instruments. True: codes got the records
/// that could be built, possibly none. False: one failure was reported.
bool runFamilyCheck(const CFamilyCheck& family, const COrderParam& order, const COrderStrategyParam& strategy,
                    std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights);

/// The steps of the check. A family with its own sequence calls the steps that it shares. A step that fails
/// reports once and returns false.

bool checkOrderNumber(const CCheckRun& run);
bool checkLineCount(const CCheckRun& run);
bool resolveAccounts(CCheckRun& run);
void takeSetting(CCheckRun& run);
bool resolveCode(CCheckRun& run);
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

/// Whether the order's price can be used; reports nothing. If the setting has the price type Specified, it is
/// the price of the order's first line. Other price types need a quote and must be allowed for the user.
bool isPriceTypeUsable(const COrderSetting& setting, const COrderParam& order, const CPriceDataPtr& quote,
                       EOperationType op, EQDBrokerType broker, const CStockInfo& stock);
/// The same for the run.
bool checkPriceType(const CCheckRun& run);
/// Reports a price that cannot be used. %1 of the pattern is the source's label, %2 the code, %3 the name of
/// the price type for codeForWord. Always returns false.
bool failPrice(const CCheckRun& run, const QString& pattern, const std::string& codeForWord);

/// The volume that the strategy's amount buys, as volumeForMoney returns it.
int volumeOfAmount(const CCheckRun& run, double fixedPrice = kUnsetDouble);

/// Reports a failure of the run. %1 of the pattern is the source's label, %2 the channel, %3 the argument.
/// Always returns false.
bool failCheck(const CCheckRun& run, const QString& pattern, const QString& argument = {});
/// Reports a code that is not a tradable instrument. Always returns false.
bool failCode(const CCheckRun& run);

/// The name used to look up the accounts of an order: the strategy's account name, or in table mode the
/// account of the first line.
QString preparedAccountKey(const QVector<COrderSingleParam>& lines, const COrderStrategyParam& strategy);

} // namespace TC
