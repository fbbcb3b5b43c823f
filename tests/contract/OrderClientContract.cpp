#include "orderservice/platform/OrderClient.h"

#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"
#include "orderservice/platform/UserConfig.h"

#include <boost/make_shared.hpp>

#include <atomic>

void contract::linkOrderClientSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;

class OrderClientContract : public contract::CContractTest {
protected:
    /// A small buy order for the known stock and the known account.
    COrderComandParamPtr command() const {
        std::vector<CAccountInfoPtr> accounts;
        std::vector<double> ratios;
        getUserConfig()->getAccountsWeights(world().broker, ESelectedAccountType::Account,
                                            QString::fromStdString(world().account), accounts, ratios, false);
        CCodeOrderParam code;
        code.m_account = accounts.at(0);
        code.m_stock.m_strMarket = world().market;
        code.m_stock.m_strCode = world().code;
        code.m_eOperationType = EOperationType::Buy;
        code.m_eOrderType = EOrderType::Plain;
        code.m_ePriceType = EPriceType::Specified;
        code.m_dPrice = 10.5;
        code.m_nVolume = 100;
        const auto result = boost::make_shared<COrderComandParam>();
        result->m_eTraderType = EQdTraderType::Stock;
        result->m_eStrategyType = EOrderStrategyType::File;
        result->m_codes = {code};
        return result;
    }
};
CONTRACT_SUITE(OrderClientContract);

TEST_P(OrderClientContract, CommandIsNotChanged) {
    const COrderComandParamPtr taken = command();
    COrderClient::instance().orderCommands(taken);
    ASSERT_EQ(taken->m_codes.size(), 1u);
    EXPECT_EQ(taken->m_codes[0].m_nVolume, 100);
    EXPECT_EQ(taken->m_codes[0].m_dPrice, 10.5);
}

TEST_P(OrderClientContract, CommandWithoutCodesIsNotAnError) {
    const auto empty = boost::make_shared<COrderComandParam>();
    EXPECT_NO_THROW(COrderClient::instance().orderCommands(empty));
}

TEST_P(OrderClientContract, CommandMayCarryUnsetFields) {
    const COrderComandParamPtr odd = command();
    odd->m_codes.push_back(CCodeOrderParam());
    EXPECT_NO_THROW(COrderClient::instance().orderCommands(odd));
}

TEST_P(OrderClientContract, AnyThreadMayIssueAndReport) {
    std::atomic<int> returned{0};
    onManyThreads([&] {
        COrderClient::instance().orderCommands(command());
        COrderClient::instance().showTradeError(QStringLiteral("指定账号不可用!"),
                                                QStringLiteral("参数错误"));
        ++returned;
    });
    EXPECT_EQ(returned.load(), 800);
}

} // namespace
