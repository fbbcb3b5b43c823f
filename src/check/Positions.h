#pragma once

#include "platform/DataCenter.h"
#include "records/Account.h"
#include "records/Portfolio.h"

#include <boost/shared_ptr.hpp>

#include <optional>
#include <vector>

namespace TC {

/// The positions of one account. The account's data is held still while this lives.
class CPositions {
public:
    explicit CPositions(const CAccountInfo& account);

    /// False where the host has no data of the account, which is not the same as no position.
    bool isKnown() const { return m_pData != nullptr; }

    /// In the host's order, none of them null.
    std::vector<boost::shared_ptr<knservice::CPositionStatics>> all() const;

private:
    boost::shared_ptr<knservice::CAccountData> m_pData;
    std::optional<knservice::CAccountData::Lock> m_lock;
};

} // namespace TC
