#pragma once

#include "platform/DataCenter.h"
#include "platform/HostService.h"
#include "records/Task.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace knservice {

/// One running task of the trading layer.
class CTask {
public:
    virtual ~CTask() = default;

    /// Asks the task to act on the record. Any thread; does not wait for the outcome.
    virtual void operate(const TC::CTaskOpRecord& record) = 0;
};

/// The tasks of the trading layer. Any thread.
class CTaskCenter {
public:
    virtual ~CTaskCenter() = default;

    /// The tasks that belong to the id; empty where there are none.
    virtual std::vector<boost::shared_ptr<CTask>> findTasks(int taskId) = 0;
};

/// The trading layer's data.
class TraderCenter : public TC::CHostService<TraderCenter> {
public:
    static constexpr const char* kServiceName = "TraderCenter";

    /// Both are alive as long as the host. Any thread.
    virtual CTaskCenter& getTaskCenter() = 0;
    virtual CDataCenter& getDataCenter() = 0;
};

} // namespace knservice
