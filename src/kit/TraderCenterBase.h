#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/TraderCenter.h"

namespace kit {

/// For a host without tasks, positions and portfolios. Lines of order files find no running task to end, and
/// baskets by position are refused. A host with tasks overrides findTasks; a host with positions overrides
/// getAccountData. Any thread.
class ORDERSERVICE_EXPORT CTraderCenterBase : public knservice::TraderCenter,
                                              public knservice::CTaskCenter,
                                              public knservice::CDataCenter {
public:
    knservice::CTaskCenter& getTaskCenter() override { return *this; }
    knservice::CDataCenter& getDataCenter() override { return *this; }
    std::vector<boost::shared_ptr<knservice::CTask>> findTasks(int) override { return {}; }
    boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string&) override { return nullptr; }
    boost::shared_ptr<knservice::CAccountData> getGlobalAccountData() override { return nullptr; }
};

} // namespace kit
