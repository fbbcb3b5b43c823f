// Runs the contract suites against the minimal host. The author of a host does the same with the new host.
#include "MinimalContractHost.h"

#include <orderservice/contract/ContractHost.h>

#include <memory>

int main(int argc, char** argv) {
    using contract::EHostTrait;
    contract::CContractHostKind kind;
    kind.name = "Minimal";
    kind.make = [] { return std::make_unique<minimal::CMinimalContractHost>(); };
    // This is a plain stock host. All traits that are not in this list are tested.
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
