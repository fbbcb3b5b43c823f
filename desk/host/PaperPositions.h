#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"
#include "platform/DataCenter.h"
#include "records/Account.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace desk {

/// The paper broker's positions as the order road reads them. Any thread. Broker and quotes outlive it.
class CPaperPositions {
public:
    CPaperPositions(const CPaperBroker& broker, const IQuoteSource& quotes,
                    const std::vector<CAccountEntry>& accounts);

    /// What the account has at this moment, null for one that the folder does not know. It is a copy, so
    /// holding its lock keeps nobody waiting. A position in an instrument that has left the folder is left
    /// out: nothing could trade it.
    boost::shared_ptr<knservice::CAccountData> of(const std::string& accountKey) const;

private:
    const CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    std::map<std::string, TC::CAccountInfoPtr> m_accounts; ///< by key
};

} // namespace desk
