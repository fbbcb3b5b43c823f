// The cancel of orders by function.
#include "orderservice/func/FuncCancel.h"

#include "orderservice/base/Bson.h"
#include "orderservice/platform/HostCall.h"
#include "tests/func/AccountFakes.h"
#include "tests/support/FakeHost.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace TC;
using CIds = std::vector<std::string>;

class FuncCancel : public testing::Test {
protected:
    FuncCancel() {
        account = boost::make_shared<CFakeFuncAccount>(host.user.accounts.at("A1"));
        host.tasks.accountData["A1"] = account;
        host.tasks.accountKeys[{"8001", 2}] = "A1";
        utils::CLogCenter::setLogEnabled(true);
    }
    void addOrder(const std::string& id, int status) {
        const auto order = boost::make_shared<knservice::COrderDetail>();
        order->m_strOrderSysID = id;
        order->m_nStatus = status;
        account->m_orders.push_back(order);
    }
    /// The numbers of the orders that a call cancels.
    CIds cancelledBy(const std::string& param) {
        host.trade.cancelledOrders.clear();
        doCancelOrder("cancel", param);
        CIds ids;
        for (const auto& order : host.trade.cancelledOrders)
            ids.push_back(order->m_strOrderSysID);
        return ids;
    }
    std::string lastLine() const { return log.lines().empty() ? std::string() : log.lines().back().text; }

    CFakeHost host;
    CLogCapture log;
    boost::shared_ptr<CFakeFuncAccount> account;
};

constexpr char kAll[] = R"({"accountId":"8001","accountType":"STOCK"})";

TEST_F(FuncCancel, FirstOrderOfTheNumberIsCancelled) {
    addOrder("1", 50);
    addOrder("2", 50);
    addOrder("2", 50);
    EXPECT_EQ(cancelledBy(R"({"accountId":"8001","accountType":"stock","orderId":"2"})"), CIds{"2"});
    EXPECT_EQ(host.trade.cancelledOrders[0], account->m_orders[1]);
    EXPECT_EQ(host.messageTexts(),
              (std::vector<QString>{
                  QStringLiteral("[函数交易]　函数: cancel, 资金账号: 8001, 账号类型: stock, 合同编号: 2")}));
    EXPECT_EQ(log.lines()[0].level, 20000);
    EXPECT_NE(log.lines()[0].text.find(
                  "func:cancel,find cancel order, accountId:8001,accountType:stock,orderSysID:2"),
              std::string::npos);
}

TEST_F(FuncCancel, ANumberThatIsFinishedIsCancelledToo) {
    addOrder("1", 56);
    EXPECT_EQ(cancelledBy(R"({"accountId":"8001","accountType":"STOCK","orderId":"1"})"), CIds{"1"});
}

TEST_F(FuncCancel, WithoutANumberAllOpenOrdersAreCancelled) {
    for (const int status : {0, 1, 52, 53, 54, 55, 56, -1})
        addOrder(std::to_string(status), status);
    EXPECT_EQ(cancelledBy(kAll), (CIds{"1", "52", "55"}));
    EXPECT_EQ(cancelledBy(R"({"accountId":"8001","accountType":"STOCK","orderId":""})"),
              (CIds{"1", "52", "55"}));
    EXPECT_EQ(host.messageTexts().size(), 6u);
}

TEST_F(FuncCancel, NothingFoundIsOnlyInTheLog) {
    for (const int status : {0, 53, 54, 56})
        addOrder("1", status);
    for (const char* param : {"{}", kAll, R"({"accountId":"8001","accountType":"FUTURE"})",
                              R"({"accountId":"8002","accountType":"STOCK"})",
                              R"({"accountId":"8001","accountType":"STOCK","orderId":"2"})",
                              R"({"accountId":"8001","accountType":"no kind"})"}) {
        EXPECT_EQ(cancelledBy(param), CIds{}) << param;
        EXPECT_EQ(log.lines().back().level, 30000);
    }
    EXPECT_TRUE(host.messageTexts().empty());
    cancelledBy(R"({"accountId":"8001","accountType":"STOCK","orderId":"2"})");
    EXPECT_NE(lastLine().find(
                  "func:cancel,can not find cancel order,accountId:8001,accountType:STOCK, orderSysID:2"),
              std::string::npos)
        << lastLine();
}

TEST_F(FuncCancel, AnUnknownKindOfAccountIsAskedAsMinusOne) {
    host.tasks.accountKeys[{"8001", -1}] = "A1";
    addOrder("1", 50);
    EXPECT_EQ(cancelledBy(R"({"accountId":"8001","accountType":"no kind"})"), CIds{"1"});
}

TEST_F(FuncCancel, DataWithoutAnAccountAndNullRecordsAreLeftOut) {
    account->m_orders.push_back(nullptr);
    account->m_orders.push_back(boost::make_shared<CAccountInfo>());
    addOrder("1", 50);
    EXPECT_EQ(cancelledBy(kAll), CIds{"1"});
    account->m_info = nullptr;
    EXPECT_EQ(cancelledBy(kAll), CIds{});
}

TEST_F(FuncCancel, TextsThatCannotBeReadThrow) {
    for (const char* param :
         {"", "[]", "{", R"({"orderId":7})", R"({"accountId":null})", R"({"accountType":2})"})
        EXPECT_THROW(doCancelOrder("cancel", param), bson::CError) << param;
}

TEST_F(FuncCancel, HostThatCannotCancelSaysSo) {
    class CPlainClient : public CTradeClient {
        EBROKER_LOGIN_STATUS getLoginStatus(const std::string&) override { return {}; }
        std::vector<int> splitEntrusts(int, double, EPriceType, const std::vector<CAccountInfoPtr>&,
                                       const std::vector<double>&, EPositionType, const std::string&,
                                       const std::string&, EOperationType, EHedge_Flag_Type,
                                       const boost::shared_ptr<utils::KNError>&) override {
            return {};
        }
        std::vector<double> splitMoney(double, const std::vector<CAccountInfoPtr>&,
                                       const std::vector<double>&, EPositionType, EOperationType,
                                       const boost::shared_ptr<utils::KNError>&) override {
            return {};
        }
        void cancelTask(int, int, const std::string&, const std::string&, const std::string&,
                        const CCancelCallback&, int) override {}
    };
    CPlainClient client;
    EXPECT_THROW(hostCall<&CTradeClient::cancelOrder>.on(client, nullptr), CHostError);
}

TEST_F(FuncCancel, OrderThatCannotBeCancelledKeepsNoOtherOpen) {
    for (const char* id : {"1", "2", "3"})
        addOrder(id, 50);
    host.trade.onCancelOrder = [](const knservice::COrderDetail& order) {
        if (order.m_strOrderSysID == "2") throw std::runtime_error("order 2 is locked");
    };
    try {
        cancelledBy(kAll);
        ADD_FAILURE() << "the error must reach the caller";
    } catch (const CHostError& error) {
        EXPECT_NE(std::string(error.what()).find("order 2 is locked"), std::string::npos);
    }
    EXPECT_EQ(host.trade.cancelledOrders.size(), 2u);
    EXPECT_EQ(host.messageTexts().size(), 2u);
}

} // namespace
