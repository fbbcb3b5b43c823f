#pragma once

#include "desk/host/DeskExchangeClient.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"
#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/UserConfig.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace desk {

/// An order as the order lists name it. The number is its id at the paper broker.
struct CPaperOrderDetail : knservice::COrderDetail {
    explicit CPaperOrderDetail(const CPaperOrder& order);

    std::string m_strAccount; ///< key of its account
};

/// The number that order lists give a state: 50 waits, 55 filled in part, 53 cancelled after it was filled in
/// part, 54 cancelled, 56 filled, 57 rejected.
int statusNumber(const CPaperOrder& order);

/// The accounts at the paper broker, for the order service. Any thread. Broker, quotes, exchange and user
/// must outlive it and the data that it hands out.
class CPaperAccounts {
public:
    using CRecords = std::map<std::string, boost::shared_ptr<knservice::IData>>;

    CPaperAccounts(CPaperBroker& broker, const IQuoteSource& quotes, const CDeskExchangeClient& exchange,
                   const TC::CUserConfig& user)
        : m_broker(broker), m_quotes(quotes), m_exchange(exchange), m_user(user) {}

    /// The account's data, or null if the user does not have the account.
    ///
    /// Each table is read when it is first asked for, and does not change afterwards. So nobody waits for the
    /// lock of the data. The tables are positions, orders and fees. A position in an instrument that is no
    /// longer in the folder is left out, because it cannot be traded. Short positions are left out too. There
    /// is a fee for each instrument that the account may hold; the desk charges none. Usable volumes and the
    /// account's figures are those of the moment of the call. All three figures are its assets
    /// (AccountAssets.h).
    boost::shared_ptr<knservice::CAccountData> of(const std::string& accountKey) const;

    /// The key of the account of this kind with this display id or, if no account has it, with this key.
    /// Empty if there is no such account.
    std::string keyOf(const std::string& id, int brokerType) const;

    CPaperBroker& broker() const { return m_broker; }
    CRecords positionsOf(const TC::CAccountInfoPtr& account) const;
    CRecords ordersOf(const std::string& accountKey) const;
    /// By CInstrumentFee::genKey. Made once for each account.
    std::shared_ptr<const CRecords> feesOf(const TC::CAccountInfo& account) const;
    knservice::CAccountDetailPtr detailOf(const std::string& accountKey) const;

private:
    CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    const CDeskExchangeClient& m_exchange;
    const TC::CUserConfig& m_user;
    mutable std::mutex m_mutex;
    mutable std::map<std::string, std::shared_ptr<const CRecords>> m_fees; ///< by account key
};

} // namespace desk
