// Runs the contract suites against a host that breaks its promises. The suites must report it.
#include "examples/minimal_host/MinimalContractHost.h"
#include "orderservice/contract/ContractHost.h"

#include <gtest/gtest.h>

#include <iostream>
#include <ostream>
#include <set>
#include <stdexcept>

namespace {

/// Returns a null pointer for a subscription, and a quote outside its limits.
class CBrokenQuotes : public minimal::CQuotes {
public:
    TC::CPriceDataPtr getStockPrice(const QString& stockKey) override {
        if (stockKey != minimal::kStockKey) return nullptr;
        const auto quote = boost::make_shared<minimal::CQuote>();
        quote->m_dUpperLimit = quote->m_dLastPrice / 2;
        return quote;
    }
    boost::shared_ptr<TC::CQuoteRequest> subscribe(const QString&, const TC::CQuoteRequest::CCallback&,
                                                   TC::ESubscribeType) override {
        return nullptr;
    }
};

/// Throws on reports that it does not expect.
class CBrokenAudit : public kit::CIntakeAuditBase {
public:
    void recordDiscard(const TC::CDiscardReport& report) override {
        if (report.m_nLines < 0) throw std::runtime_error("no lines");
    }
    void recordUnplaced(const QVector<TC::COrderParam>& orders) override {
        if (orders.isEmpty()) throw std::runtime_error("no orders");
    }
    void recordIncident(const TC::CIncidentReport& report) override {
        if (report.m_nTaskId == TC::kUnsetInt) throw std::runtime_error("no task");
    }
};

/// Throws at a cancel of an order.
class CBrokenTrading : public minimal::CTrading {
public:
    using minimal::CTrading::CTrading;
    void cancelOrder(const boost::shared_ptr<knservice::COrderDetail>&) override {
        throw std::runtime_error("no line");
    }
};

struct CBrokenServices {
    std::ostream nowhere{nullptr};
    minimal::CScreen screen{nowhere};
    CBrokenTrading brokenTrading{screen};
    CBrokenQuotes brokenQuotes;
    CBrokenAudit brokenAudit;
};

/// The services are the first base class, so that they live longer than the host that uses them.
class CBrokenContractHost : private CBrokenServices, public minimal::CMinimalContractHost {
public:
    CBrokenContractHost()
        : CMinimalContractHost([this](TC::CHost& host) {
              host.tradeClient = &brokenTrading;
              host.quoteClient = &brokenQuotes;
              host.intakeAudit = &brokenAudit;
          }) {}
};

std::set<std::string> failedTests() {
    std::set<std::string> names;
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *all.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            if (suite.GetTestInfo(j)->result()->Failed())
                names.insert(std::string(suite.name()) + "." + suite.GetTestInfo(j)->name());
        }
    }
    return names;
}

} // namespace

int main(int argc, char** argv) {
    contract::CContractHostKind kind;
    kind.name = "Broken";
    kind.make = [] { return std::make_unique<CBrokenContractHost>(); };
    kind.lacks = {}; // it lacks nearly everything but lists nothing
    if (contract::runHostContract(argc, argv, kind) == 0) return 1;
    const std::set<std::string> failed = failedTests();
    for (const char* name : {"Hosts/QuoteContract.SubscriptionIsNeverEmpty/Broken",
                             "Hosts/AccountGroupContract.GroupIsFoundUnderItsNameAndBroker/Broken",
                             "Hosts/IntakeAuditContract.ReportsOfDiscardedFilesNeverThrow/Broken",
                             "Hosts/IntakeAuditContract.ReportsOfUnplacedOrdersNeverThrow/Broken",
                             "Hosts/IntakeAuditContract.ReportsOfIncidentsNeverThrow/Broken",
                             "Hosts/BasketContract.BasketsAreACopy/Broken",
                             "Hosts/PositionContract.PositionsBelongToTheirAccount/Broken",
                             "Hosts/ExchangeContract.MarketHasAnInstrumentUnlessTheHostLacksIt/Broken",
                             "Hosts/AlgorithmOrdersContract.EachUnderstoodTextGivesANewSetting/Broken",
                             "Hosts/FunctionQuestionContract.LastPriceIsWithinTheLimitsOfTheDay/Broken",
                             "Hosts/FunctionTradingContract.CancelOfAnUnknownOrderReturns/Broken"}) {
        if (failed.count(name) > 0) continue;
        std::cerr << name << " should have failed" << std::endl;
        return 1;
    }
    std::cout << "as expected: " << failed.size() << " tests failed" << std::endl;
    return 0;
}
