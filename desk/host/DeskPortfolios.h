#pragma once

#include "desk/config/DeskConfig.h"
#include "platform/DataCenter.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace desk {

/// The folder's portfolios as the order road reads them, by kind and id of their sub-accounts, the positions
/// in the folder's order. They do not change: what is sold of one stays in it. Null where there is none.
boost::shared_ptr<knservice::CAccountData> portfolioData(const std::vector<CPortfolioEntry>& portfolios);

} // namespace desk
