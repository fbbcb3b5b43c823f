// Runs the contract suites against the minimal host: what a host author does with a host of his own.
#include "MinimalHost.h"

#include <contract/ContractHost.h>

#include <iostream>
#include <stdexcept>

namespace {

class CMinimalContractHost : public contract::IContractHost {
public:
    CMinimalContractHost() {
        const utils::KNError installed = TC::installHost(m_host.services());
        if (!installed.isSuccess()) throw std::runtime_error(installed.errorMsg());
        m_world.market = "SH";
        m_world.code = "600000";
        m_world.stockKey = minimal::kStockKey;
        m_world.unknownStockKey = QStringLiteral("SH999999");
        m_world.account = minimal::kAccount.toStdString();
        m_world.unknownName = QStringLiteral("nobody");
    }
    ~CMinimalContractHost() override { TC::releaseHost(); }
    const contract::CContractWorld& world() const override { return m_world; }

private:
    std::ostream m_nowhere{nullptr}; // the suites send thousands of commands and messages
    minimal::CMinimalHost m_host{m_nowhere};
    contract::CContractWorld m_world;
};

} // namespace

int main(int argc, char** argv) {
    using contract::EHostTrait;
    contract::CContractHostKind kind;
    kind.name = "Minimal";
    kind.make = [] { return std::make_unique<CMinimalContractHost>(); };
    // A plain stock host. Whatever is not in this list is tested.
    kind.lacks = {EHostTrait::AccountGroups,
                  EHostTrait::NamedBaskets,
                  EHostTrait::Positions,
                  EHostTrait::TradeParameters,
                  EHostTrait::SettingTexts,
                  EHostTrait::Algorithms,
                  EHostTrait::Credit,
                  EHostTrait::Futures,
                  EHostTrait::StockOptions,
                  EHostTrait::FutureOptions,
                  EHostTrait::ShenzhenConnect,
                  EHostTrait::ShanghaiConnect,
                  EHostTrait::Gold,
                  EHostTrait::ShareTransfer};
    return contract::runHostContract(argc, argv, kind);
}
