#pragma once

// The minimal host as a contract host. The host is installed during its lifetime. world() contains the names
// of its instrument and its account.

#include "MinimalHost.h"

#include <orderservice/contract/ContractHost.h>

#include <functional>
#include <ostream>
#include <stdexcept>

namespace minimal {

class CMinimalContractHost : public contract::IContractHost {
public:
    /// `change` may replace services. The replacements must outlive this object.
    explicit CMinimalContractHost(const std::function<void(TC::CHost&)>& change = {}) {
        TC::CHost services = m_host.services();
        if (change) change(services);
        const utils::KNError installed = TC::installHost(services);
        if (!installed.isSuccess()) throw std::runtime_error(installed.errorMsg());
        m_world.market = "SH";
        m_world.code = "600000";
        m_world.stockKey = kStockKey;
        m_world.unknownStockKey = QStringLiteral("SH999999");
        m_world.account = kAccount.toStdString();
        m_world.unknownName = QStringLiteral("nobody");
    }
    ~CMinimalContractHost() override { TC::releaseHost(); }
    const contract::CContractWorld& world() const override { return m_world; }

private:
    std::ostream m_nowhere{nullptr}; // the suites send thousands of commands and messages
    CMinimalHost m_host{m_nowhere};
    contract::CContractWorld m_world;
};

} // namespace minimal
