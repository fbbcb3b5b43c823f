// Function calls on a desk: through function trading to the orders of the paper broker.
#include "desk/commands/NewFolder.h"
#include "desk/config/ConfigLoader.h"
#include "desk/host/Desk.h"
#include "orderservice/func/OrderFuncService.h"
#include "tests/support/TempFolder.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace desk {
namespace {

/// A desk with the demo folder, and the failures that the caller is told, as "number key: text".
class FunctionCall : public testing::Test {
protected:
    FunctionCall() {
        if (runNew(m_folder.path("desk"), false, m_out, m_out) != 0) throw std::runtime_error(m_out.str());
        m_desk = std::make_unique<CDesk>(m_folder.path("desk"), loadDeskConfig(m_folder.path("desk")).config,
                                         m_sink);
        for (const utils::KNError& result : {m_desk->open(), TC::installHost(m_desk->services())}) {
            if (!result.isSuccess()) throw std::runtime_error(result.errorMsg());
        }
        TC::COrderFuncService::initInstance(new TC::COrderFuncService);
        service().init();
        service().registOrderFailedCallback(
            [this](const int& number, const std::string& key, const utils::KNError& error) {
                m_failures.push_back(std::to_string(number) + ' ' + key + ": " + error.errorMsg());
            });
    }
    ~FunctionCall() override {
        TC::COrderFuncService::release();
        TC::releaseHost();
    }
    static TC::COrderFuncService& service() { return *TC::COrderFuncService::instance(); }

    /// Places and waits until the broker has carried it out.
    void pass(int opType, int orderType, const std::string& account, const std::string& code,
              const std::string& volume, int priceType = -1, const std::string& price = "0",
              const std::string& function = "passorder", const std::string& algorithm = {}) {
        service().doParserOrder(function,
                                R"({"opType":)" + std::to_string(opType) + R"(,"orderType":)" +
                                    std::to_string(orderType) + R"(,"prType":)" + std::to_string(priceType) +
                                    R"(,"modelPrice":")" + price + R"(","modelVolume":")" + volume +
                                    R"(","accountID":")" + account + R"(","orderCode":")" + code +
                                    R"(","tradeKey":"free|key|7"})",
                                algorithm);
        m_desk->broker().finishQueued();
        QCoreApplication::sendPostedEvents();
    }
    void cancel(const std::string& account, const std::string& type, const std::string& order = {}) {
        service().doParserOrder("cancel",
                                R"({"accountId":")" + account + R"(","accountType":")" + type +
                                    R"(","orderId":")" + order + R"("})",
                                {});
    }
    /// "account instrument operation volume state" of each order.
    std::vector<std::string> orders() {
        std::vector<std::string> texts;
        for (const CPaperOrder& order : m_desk->broker().orders())
            texts.push_back(order.m_strAccount + ' ' + order.m_strStock + ' ' +
                            std::to_string(static_cast<int>(order.m_eOperation)) + ' ' +
                            std::to_string(order.m_nVolume) + ' ' + statusWord(order.m_eStatus));
        return texts;
    }
    using CTexts = std::vector<std::string>;

    CTempFolder m_folder;
    std::ostringstream m_out;
    CTextSink m_sink{m_out};
    std::unique_ptr<CDesk> m_desk;
    CTexts m_failures;
};

constexpr int kGivenPrice = 11;

TEST_F(FunctionCall, EachFamilyTradesOnItsAccounts) {
    pass(23, 1101, "10001", "600101", "200", kGivenPrice, "11.00");
    pass(0, 1101, "20001", "IF2609", "1", kGivenPrice, "4000.2");
    pass(27, 1101, "30001", "600102", "100", kGivenPrice, "20.00");
    pass(50, 1101, "40001", "10005001", "2", kGivenPrice, "0.5");
    pass(23, 1101, "70001", "HGT00700", "100", kGivenPrice, "375");
    pass(23, 1101, "60001", "SGT00001", "500", kGivenPrice, "44");
    EXPECT_EQ(orders(), (CTexts{"A1 SH600101 18 200 working", "F1 CFIF2609 0 1 filled",
                                "C1 SH600102 20 100 working", "O1 SHO10005001 32 2 working",
                                "H1 HGT00700 18 100 working", "S1 SGT00001 18 500 working"}));
    EXPECT_EQ(m_failures, CTexts{});
}

TEST_F(FunctionCall, PriceTypeFortyNineIsAPurchaseToo) {
    pass(23, 1101, "10001", "688105", "200", 49, "50.01");
    EXPECT_EQ(orders(), CTexts{"A1 SH688105 1043 200 filled"});
    pass(23, 1101, "10001", "688105", "200", 49, "61");
    ASSERT_EQ(m_failures.size(), 1U);
    EXPECT_EQ(m_failures[0].find("7 key: "), 0U) << m_failures[0];
    EXPECT_NE(m_failures[0].find("[40, 60]"), std::string::npos) << m_failures[0];
}

TEST_F(FunctionCall, PriceOutsideTheLimitsOfTheDayIsRefused) {
    for (const char* price : {"9.89", "12.11"})
        pass(23, 1101, "10001", "600101", "200", kGivenPrice, price);
    EXPECT_EQ(orders(), CTexts{});
    ASSERT_EQ(m_failures.size(), 2U);
    EXPECT_NE(m_failures[0].find("[9.9, 12.1]"), std::string::npos) << m_failures[0];
}

TEST_F(FunctionCall, NobodyOrdersMoreThanHeCan) {
    pass(23, 1101, "10003", "600101", "20000", kGivenPrice, "11.00"); // has 200000
    pass(23, 1101, "10003", "600101", "18100", kGivenPrice, "11.00");
    EXPECT_EQ(orders(), CTexts{"A3 SH600101 18 18100 working"});
    ASSERT_EQ(m_failures.size(), 1U);
    EXPECT_NE(m_failures[0].find("可用量 18100 少于您输入的总量 20000"), std::string::npos) << m_failures[0];
}

TEST_F(FunctionCall, RatiosAndMoneyBecomeWholeLots) {
    const double assets = m_desk->services()
                              .traderCenter->getDataCenter()
                              .getAccountData("B2")
                              ->getAccountDetail()
                              ->m_dAssetForRatio;
    EXPECT_GT(assets, 100000) << "its money and its stocks";
    pass(23, 1113, "10012", "600101", "0.5", kGivenPrice, "11.00");
    pass(23, 1102, "10012", "600101", "20000", kGivenPrice, "11.00");
    pass(23, 1123, "10012", "600101", "1", kGivenPrice, "11.00"); // all that is left
    const int half = static_cast<int>(assets / 2 / 11) / 100 * 100;
    const int rest = (static_cast<int>(100000 / 11) - half - 1800) / 100 * 100;
    EXPECT_EQ(orders(),
              (CTexts{"B2 SH600101 18 " + std::to_string(half) + " working", "B2 SH600101 18 1800 working",
                      "B2 SH600101 18 " + std::to_string(rest) + " working"}));
}

TEST_F(FunctionCall, BasketTradesEachOfItsRows) {
    pass(25, 2101, "10001", "weighted", "2");
    EXPECT_EQ(orders(), (CTexts{"A1 SH600102 18 200 working", "A1 SH600103 18 200 working",
                                "A1 SZ000201 18 200 working"}));
    EXPECT_EQ(m_failures, CTexts{});
}

TEST_F(FunctionCall, OrdersAreCancelledByNumberOrAllAtOnce) {
    for (int i = 0; i < 3; ++i)
        pass(23, 1101, "10001", "600101", "200", kGivenPrice, "10.00");
    pass(23, 1101, "10002", "600101", "200", kGivenPrice, "10.00");
    cancel("10001", "stock", "2");
    EXPECT_EQ(orders(), (CTexts{"A1 SH600101 18 200 working", "A1 SH600101 18 200 cancelled",
                                "A1 SH600101 18 200 working", "A2 SH600101 18 200 working"}));
    cancel("10001", "credit");
    EXPECT_EQ(orders()[0], "A1 SH600101 18 200 working") << "there is no such credit account";
    cancel("10001", "STOCK");
    EXPECT_EQ(orders(), (CTexts{"A1 SH600101 18 200 cancelled", "A1 SH600101 18 200 cancelled",
                                "A1 SH600101 18 200 cancelled", "A2 SH600101 18 200 working"}));
}

TEST_F(FunctionCall, RejectionByTheBrokerReachesTheCaller) {
    pass(23, 1101, "10001", "600101", "200", kGivenPrice, "11.00005");
    EXPECT_EQ(orders(), CTexts{"A1 SH600101 18 200 rejected"});
    EXPECT_EQ(m_failures, CTexts{"7 key: order 1 was rejected: the price is finer than 0.0001 or too large"});
}

TEST_F(FunctionCall, HaltReachesTheCaller) {
    m_desk->setHalted(true);
    pass(23, 1101, "10001", "600101", "200", kGivenPrice, "11.00");
    EXPECT_EQ(orders(), CTexts{});
    EXPECT_EQ(m_failures, CTexts{"7 key: command refused: the desk is halted"});
}

TEST_F(FunctionCall, AlgorithmIsRejectedByItsName) {
    pass(23, 1101, "10001", "600101", "200", kGivenPrice, "11.00", "SMARTALGOPYPASSORDER",
         R"({"m_strategyType":"twap"})");
    pass(23, 1101, "10001", "600101", "200", kGivenPrice, "11.00", "SMARTALGOPYPASSORDER", "{}");
    pass(23, 1101, "10001", "600101", "200", kGivenPrice, "11.00", "SMARTALGOPYPASSORDER", "no JSON");
    EXPECT_EQ(orders(), CTexts(3, "A1 SH600101 18 200 rejected"));
    EXPECT_EQ(m_failures,
              (CTexts{"-1 : order 1 was rejected: algorithm TWAP is not modelled",
                      "-1 : order 2 was rejected: algorithm orders are not modelled",
                      "-1 : order 3 was rejected: the settings of the algorithm could not be read"}));
}

} // namespace
} // namespace desk
