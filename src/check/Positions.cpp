#include "orderservice/check/Positions.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TraderCenter.h"

#include <boost/pointer_cast.hpp>

namespace TC {

CPositions::CPositions(const CAccountInfo& account)
    : m_pData(hostCall<&knservice::CDataCenter::getAccountData>.on(
          hostCall<&knservice::TraderCenter::getDataCenter>(), hostCall<&CAccountInfo::getKey>.on(account))) {
    if (m_pData) m_lock.emplace(*m_pData);
}

std::vector<boost::shared_ptr<knservice::CPositionStatics>> CPositions::all() const {
    std::vector<boost::shared_ptr<knservice::CPositionStatics>> positions;
    if (!m_pData) return positions;
    std::vector<boost::shared_ptr<knservice::IData>> records;
    hostCall<&knservice::CAccountData::getVector>.on(*m_pData, knservice::kPositionTable, records);
    positions.reserve(records.size());
    for (const auto& record : records) {
        auto position = boost::dynamic_pointer_cast<knservice::CPositionStatics>(record);
        if (position) positions.push_back(std::move(position));
    }
    return positions;
}

} // namespace TC
