#pragma once

#include "desk/config/PositionSide.h"
#include "orderservice/platform/UserSettings.h"
#include "orderservice/records/Basket.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderSetting.h"
#include "orderservice/records/StrategyParam.h"

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

/// The configuration of a desk folder as plain records. Texts are UTF-8. Prices and money are in currency
/// units, volumes in shares or lots. An instrument key is market and code joined, such as "SH600000".
namespace desk {

struct CUserEntry {
    std::string name;
    int kind = 100;
    std::set<int> rights; ///< TC::EUserAuth numbers
    bool orderService = true;
    bool tradeFramework = false;
    bool orderEncryption = false;
    int maxStrategies = 50;
    int maxSocketStrategies = 50;
    int fileIntervalMs = 50;
    std::map<int, std::pair<bool, bool>> msgFlags; ///< by message type
    /// Which order sources must be confirmed.
    int hintBits = TC::kHintSocketOrders | TC::kHintOrderFiles | TC::kHintTableBatches;
};

struct CPositionEntry {
    std::string stockKey;
    EPositionSide side = EPositionSide::Long;
    long long volume = 0;
    long long available = 0; ///< part of the volume that can be sold today
    double cost = 0;         ///< average price paid
    bool paidInFull = false; ///< gold only: bought outright; false: opened on margin
};

struct CAccountEntry {
    std::string key;
    std::string displayId;
    TC::EQDBrokerType broker = TC::EQDBrokerType::Stock;
    int loginStatus = 0; ///< 0: logged in
    bool simple = false; ///< rows of a table may name the account
    double funds = 0;
    double creditLimit = 0; ///< credit account: largest debt, in money and in shares at their price
    std::vector<CPositionEntry> positions;
};

struct CGroupMember {
    std::string accountKey;
    double weight = 1;
};

struct CGroupEntry {
    std::string name;
    TC::EQDBrokerType broker = TC::EQDBrokerType::Stock;
    std::vector<CGroupMember> members;
};

/// The kind of market that an instrument belongs to.
enum class EInstrumentKind : int { Stock, Future, FutureOption, StockOption, Sgt, Hgt, Neeq, Gold };

struct CInstrumentEntry {
    std::string market;
    std::string code;
    std::string name;
    std::string productId;
    std::set<int> types; ///< numbers of the instrument type table
    int unit = 1;        ///< trading unit
    int uiUnit = 1;      ///< unit shown to the user
    double upperLimit = TC::kUnsetDouble;
    double lowerLimit = TC::kUnsetDouble;
    double referencePrice = TC::kUnsetDouble;
    int transferKind = 0;
    EInstrumentKind kind = EInstrumentKind::Stock;
    int multiplier = 1;    ///< units of the underlying in one lot; money = price * volume * multiplier
    double marginRate = 1; ///< margin of an open future or a sold option, as a fraction of that money

    std::string key() const { return market + code; }
    /// Derivatives are traded under their plain code, so the code finds them like their key does. Instruments
    /// of other markets may share a code.
    bool isDerivative() const {
        return kind == EInstrumentKind::Future || kind == EInstrumentKind::FutureOption ||
               kind == EInstrumentKind::StockOption;
    }
    /// All names of the instrument; its key is the first.
    std::vector<std::string> names() const {
        return isDerivative() ? std::vector<std::string>{key(), code} : std::vector<std::string>{key()};
    }
};

struct CQuoteLevel {
    double price = TC::kUnsetDouble; ///< unset: the level is empty
    long long volume = 0;
};

struct CQuoteEntry {
    static constexpr int kDepth = 10;

    std::string stockKey;
    double last = TC::kUnsetDouble;
    double previousClose = TC::kUnsetDouble; ///< close of the day before
    std::array<CQuoteLevel, kDepth> buy;     ///< best first
    std::array<CQuoteLevel, kDepth> sell;    ///< best first
};

/// A quote that replaces the instrument's quote some time after the desk has started.
struct CQuoteChange {
    double offsetSeconds = 0;
    CQuoteEntry quote;
};

/// A portfolio that order 36 can name: the holdings of a sub-account. The folder sets them, and they do not
/// change while the desk runs.
struct CPortfolioEntry {
    struct CRow {
        std::string stockKey;
        int volume = 0; ///< shares
    };
    int kind = 0;   ///< of the sub-account
    std::string id; ///< of the sub-account
    std::vector<CRow> rows;
};

/// The answer to a question about a checked batch if nobody can be asked.
enum class EConfirm : int { Decline, Accept };

struct CDeskConfig {
    CUserEntry user;
    EConfirm confirm = EConfirm::Decline;
    bool acceptForcedConfirm = false; ///< answer used instead of the user's if a command must be confirmed
    bool allowRemoteSocket = false;   ///< order sockets may accept connections from other machines
    /// Names of the switches of "mdl_order" that are on. The command guard and the two guards of the
    /// confirmation are on unless the folder turns them off.
    std::set<std::string> switches;
    std::vector<CAccountEntry> accounts;
    std::vector<CGroupEntry> groups;
    TC::CBasketMap baskets;
    std::vector<CPortfolioEntry> portfolios;
    std::map<TC::EDefaultSetting, TC::COrderSetting> defaultSettings;
    TC::COrderStrategyMap strategies; ///< m_nStatus running: start it when the desk starts
    std::string settings;             ///< checked text of settings.xml; empty without the file
    std::vector<CInstrumentEntry> instruments;
    std::vector<CQuoteEntry> quotes;
    std::vector<CQuoteChange> quoteChanges; ///< sorted by ascending offset
};

} // namespace desk
