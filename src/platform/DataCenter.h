#pragma once

#include "platform/HostCall.h"
#include "platform/HostReports.h"
#include "records/Data.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace knservice {

/// Number under which the data of all accounts together serves its portfolios, as CPortfolio, by
/// portfolioKey.
inline constexpr int kPortfolioTable = 594;
/// Number under which an account's data serves its positions by instrument, as CPositionStatics.
inline constexpr int kPositionTable = 547;

/// The live data of one account, or of all together, in tables by number. Any thread.
class CAccountData {
public:
    virtual ~CAccountData() = default;

    /// A copy of the table's records by key text; empty where there is no such table. The records stay the
    /// host's and do not change once they are given out.
    virtual std::map<std::string, boost::shared_ptr<IData>> getMapData(int table) = 0;

    /// Appends the table's records in the host's order.
    virtual void getVector(int table, std::vector<boost::shared_ptr<IData>>& out) = 0;

    /// Holds the data still while it lives. The host decides whether others wait meanwhile. A basket of all
    /// positions holds it while it works them off one by one: quotes are asked for, waited for (up to two
    /// seconds each) and failures shown under it, so none of that may need the lock on another thread.
    class Lock {
    public:
        explicit Lock(CAccountData& data) : m_data(data) { TC::hostCall<&CAccountData::lock>.on(m_data); }
        /// An unlock that throws is reported and goes no further.
        ~Lock() {
            TC::runGuarded(QStringLiteral("账号数据未能解锁"),
                           [this] { TC::hostCall<&CAccountData::unlock>.on(m_data); });
        }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        CAccountData& m_data;
    };

protected:
    virtual void lock() {}
    virtual void unlock() {}
};

/// The trading layer's data by account. Any thread.
class CDataCenter {
public:
    virtual ~CDataCenter() = default;

    /// The data of the account of that key, or null where there is none.
    virtual boost::shared_ptr<CAccountData> getAccountData(const std::string& key) = 0;
    /// What belongs to all accounts together, such as portfolios; null while there is none.
    virtual boost::shared_ptr<CAccountData> getGlobalAccountData() = 0;
};

} // namespace knservice
