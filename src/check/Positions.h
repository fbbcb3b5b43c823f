#pragma once

#include "orderservice/platform/DataCenter.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Portfolio.h"

#include <boost/shared_ptr.hpp>

#include <optional>
#include <vector>

namespace TC {

/// The positions of one account. The account's data is locked while this object exists.
class CPositions {
public:
    explicit CPositions(const CAccountInfo& account);

    /// False if the host has no data of the account. This differs from an account without positions.
    bool isKnown() const { return m_pData != nullptr; }

    /// The positions in the host's order; none of them is null.
    std::vector<boost::shared_ptr<knservice::CPositionStatics>> all() const;

private:
    boost::shared_ptr<knservice::CAccountData> m_pData;
    std::optional<knservice::CAccountData::Lock> m_lock;
};

} // namespace TC
