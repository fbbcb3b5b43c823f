#pragma once

#include "orderservice/base/Unset.h"
#include "orderservice/records/Enums.h"

#include <QString>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// Tests that a host keeps the promises of the host services. Any host can run them: link
/// OrderService::contract and call runHostContract from main. Needs GoogleTest.
namespace contract {

/// The optional abilities of a host. A host lists those that it lacks. All others are tested, and
/// CContractWorld must describe them. For a missing ability the suites test that the host reports it: with an
/// empty answer or a refusal, and never with an order that goes out on other terms.
enum class EHostTrait {
    AccountGroups,   ///< several accounts under one name, each with a weight
    NamedBaskets,    ///< CUserConfig::getBaskets
    Positions,       ///< the accounts' positions in the data centre
    TradeParameters, ///< the text after `orderParam=`, and accounts that it names
    SettingTexts,    ///< setting texts of single orders
    Algorithms,      ///< algorithm orders
    Credit,          ///< margin trading
    Futures,
    StockOptions,
    FutureOptions,
    ShenzhenConnect,
    ShanghaiConnect,
    Gold,
    ShareTransfer,
    /// Usable volumes, figures and orders of accounts, and the cancel of single orders. Without it every
    /// function call is refused.
    FunctionTrading,
};

/// What the suites must know about the host under test. Texts in std::string are UTF-8 unless stated
/// otherwise. Fields for missing abilities stay empty.
struct CContractWorld {
    /// A tradable stock of type kTypeTradableStock with a quote, and its key as qdStockKey returns it.
    std::string market, code;
    QString stockKey;
    QString unknownStockKey;

    /// An account that is logged in, and its kind. It must have enough money for every volume that the suites
    /// split.
    std::string account;
    TC::EQDBrokerType broker = TC::EQDBrokerType::Stock;
    QString unknownName; ///< neither a group nor an account

    /// AccountGroups: a group of that kind and its members. Each member must be as usable as `account`.
    QString group;
    std::vector<std::string> groupAccounts;

    /// NamedBaskets: a basket with rows.
    QString basket;

    /// Positions: an account that holds at least one position.
    std::string holder;

    /// Markets other than stocks: one instrument key of each, as orders use it.
    QString futureKey, optionKey, futureOptionKey, sgtKey, hgtKey, goldKey, neeqKey;

    /// TradeParameters: texts after `orderParam=`, in GBK. The remark is what the host must return for the
    /// first text, in GBK.
    std::string tradeParam, tradeParamRemark;
    std::string unreadableTradeParam;

    /// SettingTexts: a text with a price type and without a command remark.
    QString settingText;
    TC::EPriceType settingPriceType = TC::unsetEnum<TC::EPriceType>();

    /// Algorithms: setting texts of algorithm orders that the host understands.
    std::vector<std::string> algorithmTexts;
    /// A setting text that the host does not understand.
    std::string unreadableAlgorithmText = "?";

    int unknownTask = 404; ///< an id that has no tasks
};

/// The host under test, installed with TC::installHost for as long as the object lives.
class IContractHost {
public:
    virtual ~IContractHost() = default;
    virtual const CContractWorld& world() const = 0;
};

struct CContractHostKind {
    std::string name; ///< letters only, because test names contain it
    /// Creates and installs the host. Called once for each test, on the main thread. Throws on failure.
    std::function<std::unique_ptr<IContractHost>()> make;
    std::set<EHostTrait> lacks;
};

/// First prints which abilities the host lacks, then runs all suites against it. Takes GoogleTest's
/// arguments. Creates a QCoreApplication if there is none. Call it once in a process, from main. Returns the
/// result for main: 0 if the host keeps every promise.
int runHostContract(int argc, char** argv, CContractHostKind kind);

} // namespace contract
