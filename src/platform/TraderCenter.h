#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/Calculator.h"
#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/Task.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace knservice {

/// One running task of the trading layer.
class ORDERSERVICE_EXPORT CTask {
public:
    virtual ~CTask() = default;

    /// Asks the task to perform the operation of the record. File thread, with the registry locked. Does not
    /// wait for the outcome; the host tells the user about it. Does not throw.
    virtual void operate(const TC::CTaskOpRecord& record) = 0;
};

/// The tasks of the trading layer.
class ORDERSERVICE_EXPORT CTaskCenter {
public:
    virtual ~CTaskCenter() = default;

    /// The tasks with this id; empty if there are none. No entry is null. File thread, with the registry
    /// locked. Returns at once and does not throw.
    virtual std::vector<boost::shared_ptr<CTask>> findTasks(int taskId) = 0;
};

/// The trading layer's data.
class ORDERSERVICE_EXPORT TraderCenter : public TC::CHostService<TraderCenter> {
public:
    static constexpr const char* kServiceName = "TraderCenter";

    /// The host owns both objects and keeps them alive until releaseHost. Any thread.
    virtual CTaskCenter& getTaskCenter() = 0;
    virtual CDataCenter& getDataCenter() = 0;
    /// The calculations of the trading layer, owned by the host as the others. By default there are none:
    /// then they limit nothing. Any thread.
    virtual ICalculator* getCalculator() { return nullptr; }
};

} // namespace knservice
