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

/// The live data of one account, or of all together, in tables by number. Every operation may be called from
/// any thread and does not throw.
class CAccountData {
public:
    virtual ~CAccountData() = default;

    /// The table's records by key text; empty if there is no such table. The map is a copy; the records are
    /// shared and do not change.
    virtual std::map<std::string, boost::shared_ptr<IData>> getMapData(int table) = 0;

    /// Appends the table's records in the host's order; nothing if there is no such table. The records are
    /// shared and do not change. Called with Lock held.
    virtual void getVector(int table, std::vector<boost::shared_ptr<IData>>& out) = 0;

    /// Locks the data as long as it lives. `26` with `all` holds it while it sells the positions one by one:
    /// it asks for quotes, waits for them (up to two seconds each) and shows failures meanwhile. None of that
    /// may need the same lock on another thread.
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
    /// Keep the data unchanged from one to the other; called on one thread. A host whose data never change
    /// leaves the defaults, which do nothing.
    virtual void lock() {}
    virtual void unlock() {}
};

/// The trading layer's data by account. Every operation may be called from any thread, answers at once and
/// does not throw.
class CDataCenter {
public:
    virtual ~CDataCenter() = default;

    /// The data of the account of that key (UTF-8), or null if there is none.
    virtual boost::shared_ptr<CAccountData> getAccountData(const std::string& key) = 0;
    /// What belongs to all accounts together, such as portfolios; null while there is none.
    virtual boost::shared_ptr<CAccountData> getGlobalAccountData() = 0;
};

} // namespace knservice
