#pragma once

#include "base/Unset.h"
#include "records/Enums.h"

#include <QString>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// The promises of the host services as a program that any host can run: link OrderService::contract and call
/// runHostContract from main. Needs GoogleTest.
namespace contract {

/// What a host may do without. Whatever a host does not list among the things that it lacks is tested, and
/// must be in its CContractWorld. Of what it lacks, the suites test that it says so: an empty answer or a
/// refusal, and never an order that goes out on other terms.
enum class EHostTrait {
    AccountGroups,   ///< several accounts under one name, with a weight each
    NamedBaskets,    ///< CUserConfig::getBaskets
    Positions,       ///< the accounts' positions in the data centre
    TradeParameters, ///< the text behind `orderParam=`, and accounts named in it
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
};

/// What the host under test holds, as far as the suites must know it. Texts in std::string are UTF-8 unless
/// they say otherwise. Fields of what the host lacks stay empty.
struct CContractWorld {
    /// A stock that trades, of type kTypeTradableStock, with a quote, and its key as qdStockKey makes it.
    std::string market, code;
    QString stockKey;
    QString unknownStockKey;

    /// An account that is logged in, rich enough for any volume that the suites split, and its kind.
    std::string account;
    TC::EQDBrokerType broker = TC::EQDBrokerType::Stock;
    QString unknownName; ///< no group and no account

    /// AccountGroups: a group of that kind and its members, each as good as `account`.
    QString group;
    std::vector<std::string> groupAccounts;

    /// NamedBaskets: a basket with rows.
    QString basket;

    /// Positions: an account that holds some.
    std::string holder;

    /// The markets beside stocks: an instrument of each, as orders ask for it.
    QString futureKey, optionKey, futureOptionKey, sgtKey, hgtKey, goldKey, neeqKey;

    /// TradeParameters: texts behind `orderParam=`, GBK. The remark of the first is given as it must come
    /// back, in GBK.
    std::string tradeParam, tradeParamRemark;
    std::string unreadableTradeParam;

    /// SettingTexts: one that names a price type and no command remark.
    QString settingText;
    TC::EPriceType settingPriceType = TC::unsetEnum<TC::EPriceType>();

    /// Algorithms: setting texts of algorithm orders that the host understands.
    std::vector<std::string> algorithmTexts;
    /// One that it does not understand.
    std::string unreadableAlgorithmText = "?";

    int unknownTask = 404; ///< an id without tasks
};

/// The host under test, installed with TC::installHost for as long as the object lives.
class IContractHost {
public:
    virtual ~IContractHost() = default;
    virtual const CContractWorld& world() const = 0;
};

struct CContractHostKind {
    std::string name; ///< letters only: part of the tests' names
    /// Makes and installs the host. Called once for each test, on the main thread; throws if it cannot.
    std::function<std::unique_ptr<IContractHost>()> make;
    std::set<EHostTrait> lacks;
};

/// Runs all suites against the host, and says first what it lacks. Takes GoogleTest's arguments. Makes a
/// QCoreApplication unless there is one. Once in a process, from main; gives main's result: 0 if the host
/// keeps every promise.
int runHostContract(int argc, char** argv, CContractHostKind kind);

} // namespace contract
