#pragma once

#include "records/Data.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>

namespace knservice {

/// Number under which the data of all accounts together serves its portfolios, as CPortfolio.
inline constexpr int kPortfolioTable = 594;

/// The live data of one account, or of all together, in tables by number. Any thread.
class CAccountData {
public:
    virtual ~CAccountData() = default;

    /// A copy of the table's records by key text; empty where there is no such table. The records stay the
    /// host's and do not change once they are given out.
    virtual std::map<std::string, boost::shared_ptr<IData>> getMapData(int table) = 0;
};

/// The trading layer's data by account. Any thread.
class CDataCenter {
public:
    virtual ~CDataCenter() = default;

    /// What belongs to all accounts together, such as portfolios; null while there is none.
    virtual boost::shared_ptr<CAccountData> getGlobalAccountData() = 0;
};

} // namespace knservice
