#pragma once

#include "base/Unset.h"
#include "records/Enums.h"

#include <QString>

#include <memory>
#include <string>
#include <vector>

/// What a host under test holds, so far as the suites must know it. Texts in std::string are UTF-8 unless
/// they say otherwise.
struct CContractWorld {
    /// A stock that trades, of type kTypeTradableStock, with a quote.
    std::string market, code;
    QString stockKey;
    QString unknownStockKey;

    /// An instrument of each other list, as orders ask for it; empty where the host has none.
    QString futureKey, optionKey, futureOptionKey, sgtKey, hgtKey, goldKey, neeqKey;

    /// An account group and its members, all logged in, and rich enough for any volume that the suites split.
    TC::EQDBrokerType broker = TC::EQDBrokerType::Stock;
    QString group;
    std::vector<std::string> groupAccounts;
    QString unknownName; ///< no group and no account
    std::string holder;  ///< an account that holds positions

    /// A named basket with rows.
    QString basket;

    /// Texts behind `orderParam=`, GBK. The remark of the first is given as it must come back, in GBK.
    std::string tradeParam, tradeParamRemark;
    std::string unreadableTradeParam;

    /// A setting text that names a price type and no command remark.
    QString settingText;
    TC::EPriceType settingPriceType = TC::unsetEnum<TC::EPriceType>();

    /// Setting texts of an algorithm order that the host understands, if it has any, and one that it does
    /// not.
    std::vector<std::string> algorithmTexts;
    std::string unreadableAlgorithmText;

    int unknownTask = 0; ///< an id without tasks
};

/// A host that is installed for as long as the object lives.
class IContractHost {
public:
    virtual ~IContractHost() = default;
    virtual const CContractWorld& world() const = 0;
};

/// A kind of host that the suites run against.
struct CContractHostKind {
    const char* name; ///< letters only: part of the tests' names
    std::unique_ptr<IContractHost> (*make)();
};

/// The kinds of the program. Each program defines it once.
std::vector<CContractHostKind> contractHosts();
