#pragma once

#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"
#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/UserConfig.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace desk {

/// The paper broker's positions, for the order service. Any thread. Broker, quotes and user must outlive it.
class CPaperPositions {
public:
    CPaperPositions(CPaperBroker& broker, const IQuoteSource& quotes, const TC::CUserConfig& user)
        : m_broker(broker), m_quotes(quotes), m_user(user) {}

    /// The account's positions at this moment, or null if the user does not have the account. The result is a
    /// copy, so nobody waits for its lock. A position in an instrument that is no longer in the folder is
    /// left out, because it cannot be traded. Short positions are left out too.
    boost::shared_ptr<knservice::CAccountData> of(const std::string& accountKey) const;

private:
    CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    const TC::CUserConfig& m_user;
};

} // namespace desk
