#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/AccountRecords.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Data.h"
#include "orderservice/records/Enums.h"

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

/// Table number of the orders in an account's data. The records are COrderDetail.
inline constexpr int kOrderTable = 542;
/// Table number of the fees in an account's data. The records are CInstrumentFee, by CInstrumentFee::genKey.
inline constexpr int kFeeTable = 555;

/// The live data of one account, or of all accounts together, in numbered tables. Every operation may be
/// called from any thread and does not throw.
class ORDERSERVICE_EXPORT CAccountData {
public:
    virtual ~CAccountData() = default;

    /// Returns the table's records by key text; empty if there is no such table. The map is a copy; the
    /// records are shared and do not change.
    virtual std::map<std::string, boost::shared_ptr<IData>> getMapData(int table) = 0;

    /// Appends the table's records in the host's order. Appends nothing if there is no such table. The
    /// records are shared and do not change. Called while a Lock is held, except when function trading
    /// cancels orders: the host must protect its own data.
    virtual void getVector(int table, std::vector<boost::shared_ptr<IData>>& out) = 0;

    /// The volume in shares or lots that the account can order now with the record's instrument, operation
    /// and price. Not set if the host does not know it, which is the default. Only shown to the user. Called
    /// by the confirmation only, on the main thread. Returns at once.
    virtual int getCanOrderVolume(const TC::CCodeOrderParam&) { return TC::kUnsetInt; }

    /// The account's figures, or null if there are none, which is the default. Called by function trading.
    virtual CAccountDetailPtr getAccountDetail() { return nullptr; }
    /// The account itself, or null, which is the default: then a cancel by function finds no orders.
    virtual TC::CAccountInfoPtr getAccountInfo() { return nullptr; }
    /// The same as getMapData without a copy. Called while a Lock is held, and not used after its end. By
    /// default there is no table.
    virtual const std::map<std::string, boost::shared_ptr<IData>>& getMapDataRef(int table);
    /// The volume in shares or lots that the account can order: what its money buys, or what it can sell or
    /// close. DBL_MAX means no limit. By default 0: then function calls are refused, except baskets, options
    /// and repayments of money, which do not ask. price: currency units. market and code: UTF-8.
    virtual double getUsableVolume(const std::string& /*market*/, const std::string& /*code*/,
                                   TC::EOperationType, TC::EHedge_Flag_Type, double /*price*/) {
        return 0;
    }

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
    /// The key of the account with this id at a broker of this kind (an EQDBrokerType, -1 if a caller named
    /// an unknown kind). Empty if there is no such account, which is the default. UTF-8.
    virtual std::string getAccountKey(const std::string& /*id*/, int /*brokerType*/) { return {}; }
    /// The data of all accounts together, such as portfolios; null while there is no such data.
    virtual boost::shared_ptr<CAccountData> getGlobalAccountData() = 0;
};

} // namespace knservice
