// The initial values of the smaller records.
#include "orderservice/records/Account.h"
#include "orderservice/records/AlgorithmOrderSetting.h"
#include "orderservice/records/Basket.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/FuncParam.h"
#include "orderservice/records/Instrument.h"
#include "orderservice/records/SocketServerParam.h"
#include "orderservice/records/Task.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

TEST(RecordDefaults, Account) {
    CAccountInfo account;
    EXPECT_EQ(account.m_nBrokerType, -1);
    EXPECT_EQ(account.getKey(), "");
    account.m_strKey = "A1";
    EXPECT_EQ(static_cast<const knservice::IData&>(account).getKey(), "A1");
}

TEST(RecordDefaults, AccountGroup) {
    const CAccountGroup group;
    EXPECT_EQ(group.m_eBrokerType, EQDBrokerType::Stock);
    EXPECT_EQ(group.m_strName, "");
    EXPECT_TRUE(group.m_accounts.empty());
}

TEST(RecordDefaults, RecordsOfTheHostHaveNoKey) {
    EXPECT_EQ(CAlgorithmOrderSetting().getKey(), "");
    EXPECT_EQ(knservice::COrderInfo().getKey(), "");
}

TEST(RecordDefaults, Basket) {
    const CBasketStockData row;
    EXPECT_TRUE(row.m_strMarket.isEmpty() && row.m_strCode.isEmpty() && row.m_strName.isEmpty());
    EXPECT_EQ(row.m_dWeight, 0.0);
    EXPECT_EQ(row.m_nVolume, 0x7fffffff);
    EXPECT_EQ(row.m_eOperationType, -1);
    EXPECT_EQ(row.m_dPrice, kUnsetDouble);
    EXPECT_TRUE(CBasketSetting().m_rows.isEmpty());
    EXPECT_EQ(CBasketHedgeParam().m_nPriceKind, 0);
}

TEST(RecordDefaults, Instrument) {
    const CStockInfo stock;
    EXPECT_EQ(stock.m_strMarket + stock.m_strCode + stock.m_strName + stock.m_strProductId, "");
    const CInstrumentDetail detail;
    EXPECT_EQ(detail.m_strMarket + detail.m_strCode + detail.m_strName + detail.m_strProductId, "");
    EXPECT_EQ(detail.m_dReferencePrice, kUnsetDouble);
    EXPECT_EQ(detail.m_tradeInfo.m_nTransferKind, 0);
}

TEST(RecordDefaults, SocketServer) {
    const CFutrueSocketServerParam server;
    EXPECT_TRUE(server.m_strUser.isEmpty());
    EXPECT_TRUE(server.m_strPass.isEmpty());
    EXPECT_EQ(server.m_nRefCount, 0);
}

TEST(RecordDefaults, TaskOperation) {
    const CTaskOpRecord record;
    EXPECT_EQ(record.m_nOperation, 0);
    EXPECT_EQ(record.m_nTime, 0);
    EXPECT_EQ(record.m_strUserName + record.m_strRemark, "");
}

TEST(RecordDefaults, FunctionCall) {
    const COrderFuncParam call;
    EXPECT_EQ(call.m_nOpType, -1);
    EXPECT_EQ(call.m_nOrderType, -1);
    EXPECT_EQ(call.m_nPrType, -1);
    EXPECT_EQ(call.m_dModelPrice, 0.0);
    EXPECT_EQ(call.m_dModelVolume, 0.0);
    EXPECT_EQ(call.m_nTradeType, 0);
    EXPECT_TRUE(call.m_orders.isEmpty());
    EXPECT_TRUE(call.m_strFuncName.isEmpty());
    EXPECT_EQ(call.m_strAccountID + call.m_strOrderCode + call.m_strStrategyName + call.m_strTradeKey +
                  call.m_strNote + call.m_strModelName,
              "");
}

} // namespace
