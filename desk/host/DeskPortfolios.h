#pragma once

#include "desk/config/DeskConfig.h"
#include "orderservice/platform/DataCenter.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace desk {

/// The folder's portfolios, for the order service, by kind and id of their sub-accounts. Positions are in the
/// folder's order. They do not change: a sale does not reduce them. Null if the folder has no portfolio.
boost::shared_ptr<knservice::CAccountData> portfolioData(const std::vector<CPortfolioEntry>& portfolios);

} // namespace desk
