// Runs the contract suites against the minimal host: what a host author does with a host of his own.
#include "MinimalContractHost.h"

#include <contract/ContractHost.h>

#include <memory>

int main(int argc, char** argv) {
    using contract::EHostTrait;
    contract::CContractHostKind kind;
    kind.name = "Minimal";
    kind.make = [] { return std::make_unique<minimal::CMinimalContractHost>(); };
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
