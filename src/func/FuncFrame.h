#pragma once

#include "orderservice/check/InstrumentSteps.h"
#include "orderservice/func/FuncReports.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/FuncParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

/// The steps that the order routines of function trading share. A routine runs on its caller's thread. A step
/// that fails reports once and returns false. An exception of the host leaves the steps as a CHostError.
namespace TC {

/// The largest volume that a record can hold. The two numbers above it are the volume of a call that does not
/// fit an int, and "not set".
inline constexpr std::int64_t kLargestVolume = kUnsetInt - 2;

/// Whether a record can hold the volume. Other volumes are not rounded, so that isUsable refuses them.
inline bool isStorable(std::int64_t volume) {
    return volume <= kLargestVolume;
}

/// Reports the failures of one call to the user and to its caller.
class CFuncReporter {
public:
    /// tradeKey: of the call. callback: may be empty. Both must outlive the reporter.
    CFuncReporter(const std::string& tradeKey, const COrderFailedCallback& callback)
        : m_strTradeKey(tradeKey), m_callback(callback) {}

    /// A message to the user, a window with the text, and the caller's call-back.
    void reportFully(const QString& text) const;
    /// A message to the user and the caller's call-back.
    void reportPlainly(const QString& text) const;
    /// Only the caller's call-back.
    void reportToCaller(const QString& text) const;

private:
    const std::string& m_strTradeKey;
    const COrderFailedCallback& m_callback;
};

/// The state of one call while its records are made.
struct CFuncRun : CInstrumentRun {
    const COrderFuncParam& param;
    const COrderStrategyParam& strategy;
    const CFuncReporter& reporter;

    std::vector<CAccountInfoPtr> accounts{};
    std::vector<double> ratios{};               ///< of the accounts
    std::map<std::string, double> weights{};    ///< the same by account key
    std::int64_t volume = 0;                    ///< shares or lots, for every account
    std::vector<std::int64_t> accountVolumes{}; ///< one for each account, if the volume is a ratio
    int unit = 1;                               ///< shares or lots in one trading unit
    std::vector<CCodeOrderParam> records{};

    /// The call's only line, or null.
    const COrderSingleParam* line() const {
        return param.m_orders.isEmpty() ? nullptr : &param.m_orders.first();
    }
    EPriceType priceType() const { return setting.m_ePriceType; }
    /// Prices that the caller gives: 11, and 49 for the routines that know it.
    bool isPriceGivenByLine() const;
    bool knowsSpecifiedByRow = false; ///< the price type 49 takes the line's price
};

/// The strategy's accounts of its kind, and their weights by key.
void takeAccounts(CFuncRun& run);
/// The same for another kind.
void takeAccountsOf(CFuncRun& run, EQDBrokerType broker);
/// The setting, with the price type of the call if it has one.
void takeSetting(CFuncRun& run, ESettingSlot slot);
/// Reads the quote. Waits up to two seconds for a usable one, unless the price is given.
void readQuote(CFuncRun& run);
/// Prices of the line or of the quote, and the volume of the line or of the strategy.
void takePricesAndVolume(CFuncRun& run);
/// Replaces the code by the full code of a stock, or of an instrument of a connect. Returns false if there is
/// none.
bool resolveFullCode(QString& code);
/// Whether money is divided by 100, and not by the price, to get a volume of the instrument. There are such
/// instruments on SH and SZ.
bool isPricedAtPar(const CStockInfo& stock);
/// The trading unit of the instrument; 1 if it is unknown.
int minUnitOf(const CFuncRun& run);
/// Whether there is a price for securities: the line's, if the price is given, otherwise one of the quote.
/// Reports nothing.
bool isPriceUsable(const CFuncRun& run);
/// A calculation price that is missing is replaced by the lower limit. A price that is not given is then read
/// again, so that the replacement is used for given prices only.
void settleCalcPrice(CFuncRun& run);
/// Whether the price lies within the limits of the day. Reports nothing.
bool isWithinLimits(const CFuncRun& run, double price);
/// Fills accountVolumes if the volume is a ratio of the account.
void takeRatios(CFuncRun& run);
/// The volume of an account.
std::int64_t volumeOf(const CFuncRun& run, std::size_t account);
/// The volume of the strategy's amount of money at the calculation price: the largest 64-bit number if it
/// cannot be worked out. fixedPrice: if set, it replaces the price in the division.
std::int64_t volumeOfAmount(const CFuncRun& run, double fixedPrice = kUnsetDouble);

/// Fills a copy of the run's record for an account. A volume that no record can hold is stamped as the
/// largest one; isUsable refuses it.
CCodeOrderParam makeRecord(const CFuncRun& run, const CAccountInfoPtr& account, std::int64_t volume);
/// Whether the record has a price above zero, if its price is given.
bool hasPrice(const CCodeOrderParam& record);
/// Reports that the record's price cannot be used. Always returns false.
bool failModelPrice(const CFuncRun& run, const CCodeOrderParam& record);
/// The report of securities of which an account can order less than the volume.
inline constexpr char kShortOfSecurities[] = "账号: [%1], 您的[%2]可用量 %3 少于您输入的总量 %4  ";
/// Whether the account can order the volume. If not, `text` gets the report.
bool isUsable(const CFuncRun& run, const CAccountInfo& account, std::int64_t volume, std::int64_t can,
              const char* pattern, QString& text);

/// Reports the failure fully and returns false. %1 of the pattern is the function's name.
bool fail(const CFuncRun& run, const char* pattern, std::initializer_list<QString> arguments = {});

/// The command of the run's records, with the fields that all routines set. The routine sets the others.
COrderComandParamPtr makeCommand(CFuncRun& run, EQdTraderType traderType);
/// Sends it. The caller checks before that the user may send commands. If the command guard is on, a command
/// without records, or with a record that no trading layer can trade, is refused with a full report, and the
/// result is false.
bool sendCommand(const CFuncRun& run, const COrderComandParamPtr& command, const char* logText);

/// A price as messages show it.
QString priceText(double price);
QString accountText(const CAccountInfo& account);
QString priceTypeText(const CFuncRun& run);

} // namespace TC
