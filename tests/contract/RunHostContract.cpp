#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"

#include <QCoreApplication>

#include <iostream>
#include <memory>
#include <stdexcept>
#include <utility>

namespace contract {
namespace {

constexpr std::pair<EHostTrait, const char*> kTraitWords[] = {
    {EHostTrait::AccountGroups, "account groups"},
    {EHostTrait::NamedBaskets, "named baskets"},
    {EHostTrait::Positions, "positions"},
    {EHostTrait::TradeParameters, "trade parameters"},
    {EHostTrait::SettingTexts, "setting texts"},
    {EHostTrait::Algorithms, "algorithm orders"},
    {EHostTrait::Credit, "margin trading"},
    {EHostTrait::Futures, "futures"},
    {EHostTrait::StockOptions, "stock options"},
    {EHostTrait::FutureOptions, "futures options"},
    {EHostTrait::ShenzhenConnect, "the Shenzhen connect"},
    {EHostTrait::ShanghaiConnect, "the Shanghai connect"},
    {EHostTrait::Gold, "gold"},
    {EHostTrait::ShareTransfer, "the share-transfer market"},
    {EHostTrait::FunctionTrading, "function trading"},
};

CContractHostKind& kindUnderTest() {
    static CContractHostKind kind;
    return kind;
}

void linkSuites() {
    linkAlgorithmSuites();
    linkEnvironmentSuites();
    linkExchangeSuites();
    linkFunctionSuites();
    linkOrderClientSuites();
    linkQuoteSuites();
    linkTradeSuites();
    linkTradingRulesSuites();
    linkUserConfigSuites();
}

/// Printed before and after the tests. A passed run does not cover the missing abilities.
void tellWhatIsLacking() {
    const CContractHostKind& kind = kindUnderTest();
    std::cout << "host " << kind.name << (kind.lacks.empty() ? " lacks nothing\n" : " says that it lacks:\n");
    for (const auto& [trait, word] : kTraitWords) {
        if (kind.lacks.count(trait) > 0)
            std::cout << "  " << word << ": tested is only that the host says so\n";
    }
    std::cout << std::flush;
}

} // namespace

std::vector<CContractHostKind> allHosts() {
    return {kindUnderTest()};
}

std::vector<CContractHostKind> hostsWith(EHostTrait trait) {
    return kindUnderTest().lacks.count(trait) == 0 ? allHosts() : std::vector<CContractHostKind>();
}

std::vector<CContractHostKind> hostsWithout(EHostTrait trait) {
    return kindUnderTest().lacks.count(trait) > 0 ? allHosts() : std::vector<CContractHostKind>();
}

int runHostContract(int argc, char** argv, CContractHostKind kind) {
    if (!kind.make || kind.name.empty())
        throw std::invalid_argument("runHostContract: the kind needs a name and a way to make the host");
    kindUnderTest() = std::move(kind);
    linkSuites();
    // GoogleTest creates the tests for the kind here, so the kind must be set before.
    testing::InitGoogleTest(&argc, argv);
    std::unique_ptr<QCoreApplication> app;
    if (QCoreApplication::instance() == nullptr) app = std::make_unique<QCoreApplication>(argc, argv);
    const bool isListing = GTEST_FLAG_GET(list_tests);
    if (!isListing) tellWhatIsLacking();
    const int result = RUN_ALL_TESTS();
    if (!isListing) tellWhatIsLacking();
    return result;
}

} // namespace contract
