// The operations of the service besides the entry: each gives what its function gives.
#include "tests/func/FuncServiceFixture.h"

namespace {

using namespace TC;

class OrderFuncOperations : public FuncServiceFixture {};

TEST_F(OrderFuncOperations, OtherOperationsGiveWhatTheirFunctionsGive) {
    EXPECT_TRUE(service.isComposeOrderType(22));
    EXPECT_FALSE(service.isComposeOrderType(21));
    EXPECT_EQ(service.tranAccountType("credit"), 3);
    EXPECT_EQ(service.str2KNError("text").errorId(), -1);
    EXPECT_TRUE(service.str2KNError("").isSuccess());
    host.rules.displayIds["A2"] = QStringLiteral("8002");
    EXPECT_EQ(service.translateAccountID("8002", EOrderStrategyTradeType::Stock), "A2");
    COrderFuncParam funcParam;
    std::string error;
    service.parserParam(funcParam, textOf(), error);
    EXPECT_EQ(error, "");
    EXPECT_EQ(funcParam.m_dModelPrice, 10.4);
    const COrderStrategyParam of = service.getStrategy(funcParam, error);
    EXPECT_EQ(of.m_strSelectedAccount, QStringLiteral("A1"));
    EXPECT_TRUE(service.checkAccount(of));
    EXPECT_TRUE(service.checkAccountStatus(of));
    host.trade.loginStatus["A1"] = 2;
    EXPECT_FALSE(service.checkAccountStatus(of));
    host.trade.loginStatus.clear();
    EXPECT_FALSE(service.fillStkOptionParam(funcParam = {}, static_cast<PassorderFunOrderType>(50), error));
    EXPECT_EQ(error, "下单数量/金额/比例为0");
}

TEST_F(OrderFuncOperations, VolumeOperationsGiveWhatTheirFunctionsGive) {
    std::string key = "A1";
    QString code = QStringLiteral("SH600000");
    accounts["A1"]->m_dUsable = 1234;
    EXPECT_EQ(service.getCanOrderVolume(key, EOperationType::Sell, code, 10.5), 1234);
    EXPECT_NE(accounts["A1"]->m_calls.at(0).find("op 19"), std::string::npos);
    EXPECT_EQ(service.getAccountPercentNum(key, EOperationType::Sell, 1123, code, 10.5, 0.5), 600);
    EXPECT_EQ(service.calcRightOrderVolume(EOperationType::Buy, 250, 100, 0), 200);
    EXPECT_EQ(service.calcRightOrderVolume(EOperationType::Buy, 250, 0, 0), 250); // no division by zero
    const auto fee = boost::make_shared<knservice::CInstrumentFee>();
    const auto detail = boost::make_shared<CInstrumentDetail>(*host.exchange.getCodeInfo(code));
    detail->m_dMultiplier = 100;
    fee->m_instrument = detail;
    accounts["A1"]->m_fees[knservice::CInstrumentFee::genKey(*detail, *host.user.accounts.at("A1"))] = fee;
    EXPECT_EQ(service.getAccountFuturesNum(key, EOperationType::Buy, code, 21000, 10.5), 20);
    COrderFuncService::CAccounts none;
    {
        const auto request = service.prepareCode(code, none);
        EXPECT_EQ(host.quotes.liveSubscriptions, 1);
        EXPECT_EQ(host.quotes.subscribed.back(), code);
    }
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
}

TEST_F(OrderFuncOperations, RoutinesAndTheMessageCanBeCalledThemselves) {
    std::string error;
    COrderFuncParam funcParam;
    service.parserParam(funcParam, textOf(), error);
    const COrderStrategyParam of = service.getStrategy(funcParam, error);
    service.orderStock(funcParam, of, {});
    service.orderCredit(funcParam, of); // 23 is a purchase there too
    ASSERT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(host.commands()[1]->m_eTraderType, EQdTraderType::Credit);
    EXPECT_EQ(host.commands()[1]->m_codes.at(0).m_eOperationType, EOperationType::Buy);
    EXPECT_NE(service.getAlgParamsStr("{}", host.commands()[0]->m_codes).find("55=600000"),
              std::string::npos);
    funcParam.m_nOpType = 24;
    service.orderCredit(funcParam, of);
    EXPECT_EQ(host.commands()[2]->m_codes.at(0).m_eOperationType, EOperationType::Sell);
    forget();
    service.orderSpec(funcParam, of);
    service.orderOption(funcParam, of);
    EXPECT_EQ(host.errorTexts().size(), 2u); // neither knows the code or the number
    QString text = QStringLiteral("text");
    forget();
    service.sendMsg(text, utils::ELogLevel::Warn);
    EXPECT_EQ(host.messageTexts(), std::vector<QString>{text});
    funcParam.m_nPrType = 5;
    service.orderCompose(funcParam, of);
    EXPECT_EQ(onlyCommand()->m_eTraderType, EQdTraderType::Basket);
}

TEST_F(OrderFuncOperations, PositionsBecomeTheOrdersThatReachTheTargets) {
    host.tasks.accountData.erase("A1");
    host.tasks.addPosition(host.user.accounts.at("A1"), "SH", "600000", 300);
    QVector<COrderSingleParam> rows(1);
    rows[0].m_strCode = QStringLiteral("600000");
    rows[0].m_nVolume = 500;
    service.exchangePosition(host.user.accounts.at("A1"), rows);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].m_nVolume, 200); // the multiplier is 1
}

} // namespace
