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

/// What is said about parameters that make no order. Nearly all families say it about an order of several
/// lines.
inline constexpr char kBadParams[] = "[%1]　通道号: %2, 下单参数不合法!";
/// What all say about a number that is none of theirs, and some about lines that do not fit it.
inline constexpr char kBadOrderNumber[] = "[%1]　通道号: %2, 下单指令不合法!";
/// What nearly all say about a price that cannot be used, through failPrice: %2 is the code, %3 the price
/// type.
inline constexpr char kBadStockPrice[] = "[%1]　证券 [%2] %3无效, 无法下单!";

/// What happens to a non-empty setting text of an order.
enum class ESettingText {
    OrderKindThenPlain, ///< the setting takes the order's order kind; the text is read unless that is an
                        ///< algorithm's
    PlainOnly, ///< the text is read unless the order's kind is an algorithm's; the setting keeps its own kind
    Always,    ///< the text is read whatever the kind; the setting keeps its own
};

/// Whether an order whose price stands in it waits for a quote.
enum class EQuoteWait {
    UnlessSpecified, ///< it does not
    AlsoSpecified,   ///< it does until there is any quote
};

/// Whether the split learns the instrument.
enum class ESplitInstrument { Named, Unnamed };

/// Whether the price can be used; reports where not, with the words that nearly all families have.
bool checkStockPrice(const CCheckRun& run);
/// The volume that the run's amount of money buys, for families that round nothing.
int plainVolumeOfAmount(const CCheckRun& run);

/// One product family as the check frame sees it. What is set here holds for most; a family sets what it does
/// otherwise, as far as its route goes through the steps that ask. Order-type numbers and the setting slot
/// stand in records/Families.h. Texts: %1 source, %2 channel, and behind them what their places say. Of the
/// functions, one that is null means that the family has no such step.
struct CFamilyCheck {
    EOrderStrategyTradeType m_eTradeType;
    /// Report where an order has more lines than the family takes.
    const char* m_pszTooManyLines = kBadParams;
    ESettingText m_eSettingText = ESettingText::Always;
    EQuoteWait m_eQuoteWait = EQuoteWait::UnlessSpecified;
    ESplitInstrument m_eSplitInstrument = ESplitInstrument::Named;
    /// Puts what the line says of the setting into it, before the setting text is read.
    void (*m_pfnLineIntoSetting)(const COrderSingleParam& line, COrderSetting& setting) = nullptr;
    /// Resolves run.code, which came with the order; reports and returns false where it cannot. Null: such a
    /// code is taken as it stands.
    bool (*m_pfnResolveCode)(CCheckRun& run) = nullptr;
    /// Whether run.code, wherever it came from, can be traded; reports where not.
    bool (*m_pfnCheckCode)(const CCheckRun& run) = nullptr;
    /// Whether the price can be used; reports where not. Null: any price goes on, a missing one too.
    bool (*m_pfnCheckPrice)(const CCheckRun& run) = checkStockPrice;
    /// The volume that an amount of money buys. Null: an amount has no effect.
    int (*m_pfnVolumeOfAmount)(const CCheckRun& run) = plainVolumeOfAmount;
    /// A look at the volumes as the split gave them; reports and returns false where they will not do.
    bool (*m_pfnCheckVolumes)(const CCheckRun& run) = nullptr;
    /// Whether a volume is left out of the records; reports why.
    bool (*m_pfnIsLeftOut)(const CCheckRun& run, int volume) = nullptr;
    /// Last touches to a record of that volume, before the test of its price.
    void (*m_pfnFinishRecord)(const CCheckRun& run, int volume, CCodeOrderParam& record) = nullptr;
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
    CInstrumentDetailPtr detail{};                   ///< null where the instrument is unknown
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
bool runFamilyCheck(CCheckRun run);

/// The steps of the course; a family with a route of its own calls those that it shares. Those that can fail
/// report once and return false.

bool checkOrderNumber(const CCheckRun& run);
bool checkLineCount(const CCheckRun& run);
bool resolveAccounts(CCheckRun& run);
void takeSetting(CCheckRun& run);
bool resolveCode(CCheckRun& run);
void loadInstrument(CCheckRun& run);
/// Reads the quote, and waits up to two seconds for a usable one as the family's rule says. A price that
/// stays away is no failure here.
void waitForQuote(CCheckRun& run);
void takePrices(CCheckRun& run);
void takeVolume(CCheckRun& run);
bool splitOverAccounts(CCheckRun& run);
/// A record of the operation for each account that gets a volume; the volumes are as many as the accounts.
bool buildRecords(CCheckRun& run, EOperationType op);
/// Number, line count, accounts, setting, code and instrument: what all routes begin with.
bool beginCheck(CCheckRun& run);
/// Everything behind the beginning.
bool finishCheck(CCheckRun& run);

/// Parts of the steps for routes that put them together otherwise.

/// Puts instrument, operation and the user's name into run.record, which all records of the order start from.
void startRecord(CCheckRun& run, EOperationType op, CStockInfo stock);
/// The prices of a quote as the checks use them: unset if there is no quote, and finite otherwise.
double originPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op);
double calcPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op, int orderType);
double orderPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op, int orderType);
double fallbackPriceOf(const CPriceDataPtr& quote);
/// Whether the quote has a price of the type; types whose price stands elsewhere need a quote alone.
bool isQuoteUsable(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op);
/// The quote of a key, waited for up to two seconds until it has a price of the type.
CPriceDataPtr waitForQuote(const QString& stockKey, EPriceType priceType, EOperationType op, EQuoteWait rule);
/// Splits the run's volume; the volumes may be of any number. The error tells why. None is above 0 if the
/// run's volume is below 0.
boost::shared_ptr<utils::KNError> splitVolumes(CCheckRun& run, EOperationType op);
/// Whether there is one volume for each account; reports a failed split where not.
bool checkSplitCount(const CCheckRun& run, std::size_t count, const utils::KNError& error);
/// The report of a failed split. Always false.
bool failSplit(const CCheckRun& run, const utils::KNError& error);
/// A copy of the run's record stamped with setting, price, account and volume.
CCodeOrderParam makeRecord(const CCheckRun& run, EOperationType op, const CAccountInfoPtr& account,
                           int volume);
/// False, after a report, if the record would go out at a specified price of zero or at one that is not
/// finite.
bool checkRecordPrice(const CCheckRun& run, const CCodeOrderParam& record);

/// Whether the price can be used; reports nothing.
bool checkPriceType(const CCheckRun& run);
/// Reports a price that cannot be used: %1 of the pattern is the source's label, %2 the code, %3 the price
/// type's word, made for codeForWord. Always false.
bool failPrice(const CCheckRun& run, const QString& pattern, const std::string& codeForWord);

/// The volume that the strategy's amount buys at the run's price, not rounded to any unit; unset where amount
/// or price cannot be used. fixedPrice: stands in for the price where it is set, which must be usable all the
/// same.
int volumeOfAmount(const CCheckRun& run, double fixedPrice = kUnsetDouble);
/// Down to whole trading units of the run's instrument; an unset volume stays so.
int roundToUnit(const CCheckRun& run, int volume);

/// Reports a failure of the run: %1 of the pattern is the source's label, %2 the channel, %3 the argument.
/// Always false.
bool failCheck(const CCheckRun& run, const QString& pattern, const QString& argument = {});
/// The report of a code that names nothing to trade.
bool failCode(const CCheckRun& run);

/// The name under which the accounts of an order are looked up: the strategy's, or the first line's own in
/// table mode.
QString preparedAccountKey(const COrderParam& order, const COrderStrategyParam& strategy);

} // namespace TC
