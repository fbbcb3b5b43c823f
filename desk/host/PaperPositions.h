#pragma once

#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"
#include "platform/DataCenter.h"
#include "platform/UserConfig.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace desk {

/// The paper broker's positions as the order road reads them. Any thread. Broker, quotes and user outlive it.
class CPaperPositions {
public:
    CPaperPositions(const CPaperBroker& broker, const IQuoteSource& quotes, const TC::CUserConfig& user)
        : m_broker(broker), m_quotes(quotes), m_user(user) {}

    /// What the account has at this moment, null for one that the user does not have. It is a copy, so
    /// holding its lock keeps nobody waiting. A position in an instrument that has left the folder is left
    /// out: nothing could trade it.
    boost::shared_ptr<knservice::CAccountData> of(const std::string& accountKey) const;

private:
    const CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    const TC::CUserConfig& m_user;
};

} // namespace desk
