#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Data.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace knservice {

/// Table number of the portfolios in the global account data. The records are CPortfolio, their keys are made
/// by portfolioKey.
inline constexpr int kPortfolioTable = 594;
/// Table number of the positions in an account's data. There is one CPositionStatics for each instrument.
inline constexpr int kPositionTable = 547;

/// The live data of one account, or of all accounts together, in numbered tables. Every operation may be
/// called from any thread and does not throw.
class ORDERSERVICE_EXPORT CAccountData {
public:
    virtual ~CAccountData() = default;

    /// Returns the table's records by key text; empty if there is no such table. The map is a copy; the
    /// records are shared and do not change.
    virtual std::map<std::string, boost::shared_ptr<IData>> getMapData(int table) = 0;

    /// Appends the table's records in the host's order. Appends nothing if there is no such table. The
    /// records are shared and do not change. Called while a Lock is held.
    virtual void getVector(int table, std::vector<boost::shared_ptr<IData>>& out) = 0;

    /// The volume in shares or lots that the account can order now with the record's instrument, operation
    /// and price. Not set if the host does not know it, which is the default. Only shown to the user. Called
    /// by the confirmation only, on the main thread. Returns at once.
    virtual int getCanOrderVolume(const TC::CCodeOrderParam&) { return TC::kUnsetInt; }

    /// Locks the data during its lifetime. An order 26 with `all` holds the lock while it sells the positions
    /// one by one. During this time it requests quotes, waits up to two seconds for each quote and shows
    /// failures. The host must not need the same lock on another thread for these operations, or the two
    /// threads deadlock.
    class Lock {
    public:
        explicit Lock(CAccountData& data) : m_data(data) { TC::hostCall<&CAccountData::lock>.on(m_data); }
        /// If unlock throws, the exception is reported and does not leave the destructor.
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
    /// The data must not change between lock and unlock. Both are called on the same thread. The defaults do
    /// nothing, which is right for a host whose data never change.
    virtual void lock() {}
    virtual void unlock() {}
};

/// The trading layer's data by account. Every operation may be called from any thread, returns at once and
/// does not throw.
class ORDERSERVICE_EXPORT CDataCenter {
public:
    virtual ~CDataCenter() = default;

    /// The data of the account with this key (UTF-8), or null if there is no such account.
    virtual boost::shared_ptr<CAccountData> getAccountData(const std::string& key) = 0;
    /// The data of all accounts together, such as portfolios; null while there is no such data.
    virtual boost::shared_ptr<CAccountData> getGlobalAccountData() = 0;
};

} // namespace knservice
