#pragma once

#include "check/OrderServiceBase.h"
#include "platform/Quote.h"
#include "records/CommandParam.h"
#include "records/Families.h"
#include "records/OrderParam.h"
#include "records/StrategyParam.h"

#include <QString>

#include <map>
#include <string>
#include <vector>

namespace TC {

struct CCheckRun;

/// What nearly all families say about an order of several lines.
inline constexpr char kTooManyLines[] = "[%1]　通道号: %2, 下单参数不合法!";

/// What happens to a non-empty setting text of an order.
enum class ESettingText {
    OrderKindThenPlain, ///< the setting takes the order's order kind; the text is read unless that is an
                        ///< algorithm's
    PlainOnly, ///< the text is read unless the order's kind is an algorithm's; the setting keeps its own kind
    Always,    ///< the text is read whatever the kind; the setting keeps its own
};

/// One product family as the check frame sees it: where it differs from the others. Order-type numbers and
/// the setting slot stand in records/Families.h. A function that is null means that the family has no such
/// step: the course passes over it.
struct CFamilyCheck {
    EOrderStrategyTradeType m_eTradeType;
    /// Report where an order of one line has several: %1 source, %2 channel. Null stands for kTooManyLines;
    /// there is no family whose course takes several lines.
    const char* m_pszTooManyLines;
    ESettingText m_eSettingText;
    /// Resolves run.code, which came with the order; reports and returns false where it cannot. Null: such a
    /// code is taken as it stands.
    bool (*m_pfnResolveCode)(CCheckRun& run);
    /// Whether the price can be used; reports where not. Null: any price goes on, a missing one too.
    bool (*m_pfnCheckPrice)(const CCheckRun& run);
    /// The volume that an amount of money buys. Null: an amount counts for nothing.
    int (*m_pfnVolumeOfAmount)(const CCheckRun& run);
    /// Last touches to a record of that volume, before the test of its price. Null: none.
    void (*m_pfnFinishRecord)(const CCheckRun& run, int volume, CCodeOrderParam& record);
};

/// One order on its way through the check. The steps below fill it from top to bottom.
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
    boost::shared_ptr<CQuoteRequest> quoteRequest{}; ///< held so that quotes keep coming
    CCodeOrderParam record{};                        ///< what all records of the order have in common
    CPriceDataPtr priceData{};
    double calcPrice = kUnsetDouble;
    double orderPrice = kUnsetDouble;
    int volume = kUnsetInt;
    std::vector<int> volumes{};

    const CStockInfo& stock() const { return record.m_stock; }
    /// The order's only line, or null.
    const COrderSingleParam* line() const {
        return order.m_orders.isEmpty() ? nullptr : &order.m_orders.first();
    }
};

/// The course that the single-instrument families share, step by step. True means that run.codes got what
/// could be built, which can be nothing; false comes after one report.
bool runFamilyCheck(CCheckRun& run);

/// The steps of the course; a family with a route of its own calls those that it shares. Those that can fail
/// report once and return false.

bool checkOrderNumber(const CCheckRun& run);
bool checkLineCount(const CCheckRun& run);
bool resolveAccounts(CCheckRun& run);
void takeSetting(CCheckRun& run);
bool resolveCode(CCheckRun& run);
void loadInstrument(CCheckRun& run);
/// Reads the quote, and waits up to two seconds for a usable one unless the price stands in the order. A
/// price that stays away is no failure here.
void waitForQuote(CCheckRun& run);
void takePrices(CCheckRun& run);
void takeVolume(CCheckRun& run);
bool splitOverAccounts(CCheckRun& run);
bool buildRecords(CCheckRun& run);

/// Reports a failure of the run: %1 of the pattern is the source's label, %2 the channel, %3 the argument.
/// Always false.
bool failCheck(const CCheckRun& run, const QString& pattern, const QString& argument = {});

/// The name under which the accounts of an order are looked up: the strategy's, or the first line's own in
/// table mode.
QString preparedAccountKey(const COrderParam& order, const COrderStrategyParam& strategy);

/// The number without its fraction, or kUnsetInt where that is no int.
int truncateToInt(double value);

} // namespace TC
