#include "desk/host/PaperAccounts.h"

#include "desk/host/DeskUserConfig.h"
#include "desk/market/Market.h"
#include "orderservice/records/Portfolio.h"
#include "tests/support/TempFolder.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

namespace desk {
namespace {

CInstrumentEntry makeInstrument(const std::string& market, const std::string& code) {
    CInstrumentEntry entry;
    entry.market = market;
    entry.code = code;
    entry.name = "name of " + code;
    return entry;
}

CPositionEntry makePosition(const std::string& key, long long volume, long long available) {
    CPositionEntry entry;
    entry.stockKey = key;
    entry.volume = volume;
    entry.available = available;
    entry.cost = 10;
    return entry;
}

CAccountEntry makeAccount(const std::string& key, std::vector<CPositionEntry> positions,
                          const std::string& displayId = {}) {
    CAccountEntry entry;
    entry.key = key;
    entry.displayId = displayId;
    entry.funds = 1000;
    entry.positions = std::move(positions);
    return entry;
}

CDeskConfig configOf(const std::vector<CAccountEntry>& accounts) {
    CDeskConfig config;
    config.accounts = accounts;
    return config;
}

class PaperAccounts : public testing::Test {
protected:
    void SetUp() override {
        const utils::KNError opened = m_broker.open(m_folder.path(), m_accounts, 0);
        ASSERT_TRUE(opened.isSuccess()) << opened.errorMsg();
    }
    /// An order of A1 at 10, which waits because there is no quote.
    void place(TC::EOperationType operation, int volume) {
        TC::CCodeOrderParam code;
        code.m_account = m_user.getAccountData(QStringLiteral("A1"))->toInfo();
        code.m_eOperationType = operation;
        code.m_stock = {"SH", "600000", "", ""};
        code.m_ePriceType = TC::EPriceType::Specified;
        code.m_dPrice = 10;
        code.m_nVolume = volume;
        const auto command = boost::make_shared<TC::COrderComandParam>();
        command->m_eTraderType = TC::EQdTraderType::Stock;
        command->m_codes = {code};
        m_broker.queueCommand({command, 0, m_broker.reserveTask(), {}, {}});
    }
    TC::CInstrumentDetailPtr detailOf(const char* key) const {
        for (const TC::CInstrumentDetailPtr& each : m_exchange.heldBy(TC::EQDBrokerType::Stock)) {
            if (each->m_strMarket + each->m_strCode == key) return each;
        }
        return nullptr;
    }

    CTempFolder m_folder;
    const std::vector<CAccountEntry> m_accounts = {
        makeAccount("A1",
                    {makePosition("SH600000", 500, 300), makePosition("SZ000001", 200, 200),
                     makePosition("SH600009", 100, 100)},
                    "10001"),
        makeAccount("A2", {makePosition("SH600000", 700, 700)}), makeAccount("A3", {}, "A1")};
    const CMarket m_market{{makeInstrument("SH", "600000"), makeInstrument("SZ", "000001")}, {}, {}};
    CPaperBroker m_broker{m_market, [](const std::vector<CBrokerEvent>& events) { return events.size(); }};
    const CDeskUserConfig m_user{configOf(m_accounts)};
    const CDeskExchangeClient m_exchange{{makeInstrument("SH", "600000"), makeInstrument("SZ", "000001")}};
    const CPaperAccounts m_paper{m_broker, m_market, m_exchange, m_user};
};

TEST_F(PaperAccounts, WhatAnAccountCanOrderIsKnownForSales) {
    const auto data = m_paper.of("A1");
    ASSERT_TRUE(data);
    const auto canOrder = [&](TC::EOperationType operation, const std::string& code) {
        TC::CCodeOrderParam record;
        record.m_eOperationType = operation;
        record.m_stock.m_strMarket = "SH";
        record.m_stock.m_strCode = code;
        return data->getCanOrderVolume(record);
    };
    EXPECT_EQ(canOrder(TC::EOperationType::Sell, "600000"), 300);
    EXPECT_EQ(canOrder(TC::EOperationType::SellToRepay, "600000"), 300);
    EXPECT_EQ(canOrder(TC::EOperationType::Sell, "600001"), 0);
    for (const auto operation : {TC::EOperationType::Buy, TC::EOperationType::ShortSell,
                                 TC::EOperationType::OpenShort, static_cast<TC::EOperationType>(-1)})
        EXPECT_EQ(canOrder(operation, "600000"), TC::kUnsetInt) << static_cast<int>(operation);
}

TEST_F(PaperAccounts, AnAccountHasItsOwnWithWhatCanBeSold) {
    const auto data = m_paper.of("A1");
    ASSERT_TRUE(data);
    std::vector<boost::shared_ptr<knservice::IData>> records;
    data->getVector(knservice::kPositionTable, records);
    ASSERT_EQ(records.size(), 2U) << "what the folder does not know any more is left out";
    const auto first = boost::dynamic_pointer_cast<knservice::CPositionStatics>(records[0]);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->m_account->m_strKey, "A1");
    EXPECT_EQ(first->m_account->m_nBrokerType, static_cast<int>(TC::EQDBrokerType::Stock));
    EXPECT_EQ(first->m_strMarket, "SH");
    EXPECT_EQ(first->m_strCode, "600000");
    EXPECT_EQ(first->m_strName, "name of 600000");
    EXPECT_EQ(first->m_nPositionVolume, 500);
    EXPECT_EQ(first->m_nAvailableVolume, 300);
    EXPECT_EQ(data->getMapData(knservice::kPositionTable).count("SZ000001"), 1U);
}

TEST_F(PaperAccounts, OtherTablesAreEmpty) {
    const auto data = m_paper.of("A1");
    std::vector<boost::shared_ptr<knservice::IData>> records;
    data->getVector(knservice::kPortfolioTable, records);
    EXPECT_TRUE(records.empty());
    EXPECT_TRUE(data->getMapData(knservice::kPortfolioTable).empty());
}

TEST_F(PaperAccounts, AnAccountWithoutPositionsIsThereAndAnUnknownOneIsNot) {
    const auto data = m_paper.of("A3");
    ASSERT_TRUE(data);
    EXPECT_TRUE(data->getMapData(knservice::kPositionTable).empty());
    EXPECT_FALSE(m_paper.of("A9"));
}

TEST_F(PaperAccounts, DataNameTheirAccountAndItsFigures) {
    const auto data = m_paper.of("A1");
    ASSERT_TRUE(data->getAccountInfo());
    EXPECT_EQ(data->getAccountInfo()->getKey(), "A1");
    const knservice::CAccountDetailPtr detail = data->getAccountDetail();
    ASSERT_TRUE(detail);
    constexpr double kCost = (500 + 200 + 100) * 10; // without quotes the positions are worth what they cost
    EXPECT_EQ(detail->m_dAssetForRatio, 1000 + kCost);
    EXPECT_EQ(detail->m_dAssetCheck, 1000 + kCost);
    EXPECT_EQ(detail->m_dBasketAsset, 1000 + kCost);
}

TEST_F(PaperAccounts, UsableVolumesAreThoseOfTheMoment) {
    const auto data = m_paper.of("A1");
    const auto usable = [&](TC::EOperationType operation, double price) {
        return data->getUsableVolume("SH", "600000", operation, TC::EHedge_Flag_Type::Speculation, price);
    };
    EXPECT_EQ(usable(TC::EOperationType::Buy, 10), 100);
    EXPECT_EQ(usable(TC::EOperationType::Sell, 10), 300);
    place(TC::EOperationType::Buy, 40);
    EXPECT_EQ(usable(TC::EOperationType::Buy, 10), 60) << "the order waits with its money";
    EXPECT_EQ(
        data->getUsableVolume("SH", "999999", TC::EOperationType::Buy, TC::EHedge_Flag_Type::Speculation, 10),
        0);
}

TEST_F(PaperAccounts, OrdersAreListedByTheirNumbersWithTheirStates) {
    for (int i = 0; i < 11; ++i)
        place(TC::EOperationType::Buy, 1);
    place(TC::EOperationType::Buy, 1000);
    ASSERT_TRUE(m_broker.cancelTask(3, "").isSuccess());
    std::vector<boost::shared_ptr<knservice::IData>> records;
    m_paper.of("A1")->getVector(knservice::kOrderTable, records);
    std::string text;
    for (const auto& record : records) {
        const auto& order = dynamic_cast<const CPaperOrderDetail&>(*record);
        EXPECT_EQ(order.m_strAccount, "A1");
        text += order.m_strOrderSysID + ':' + std::to_string(order.m_nStatus) + ' ';
    }
    EXPECT_EQ(text, "1:50 2:50 3:54 4:50 5:50 6:50 7:50 8:50 9:50 10:50 11:50 12:57 ");
    records.clear();
    m_paper.of("A2")->getVector(knservice::kOrderTable, records);
    EXPECT_TRUE(records.empty()) << "those of another account";
}

TEST_F(PaperAccounts, OnlyTheNumbersOfWaitingOrdersAreOpen) {
    const auto isOpen = [](int number) { return (number >= 1 && number <= 52) || number == 55; };
    for (const EOrderStatus status : {EOrderStatus::Working, EOrderStatus::PartFilled, EOrderStatus::Filled,
                                      EOrderStatus::Cancelled, EOrderStatus::Rejected}) {
        for (const int filled : {0, 100}) {
            CPaperOrder order;
            order.m_eStatus = status;
            order.m_nFilled = filled;
            EXPECT_EQ(isOpen(statusNumber(order)), order.isOpen()) << statusWord(status);
        }
    }
}

TEST_F(PaperAccounts, FeesAreKeyedByAccountAndInstrument) {
    const auto data = m_paper.of("A1");
    const TC::CInstrumentDetailPtr instrument = detailOf("SH600000");
    ASSERT_TRUE(instrument);
    const knservice::CAccountData::Lock lock(*data);
    const auto& fees = data->getMapDataRef(knservice::kFeeTable);
    EXPECT_EQ(fees.size(), 2U);
    const auto found = fees.find(knservice::CInstrumentFee::genKey(*instrument, *data->getAccountInfo()));
    ASSERT_NE(found, fees.end());
    const auto fee = boost::dynamic_pointer_cast<knservice::CInstrumentFee>(found->second);
    ASSERT_TRUE(fee);
    EXPECT_EQ(fee->m_instrument, instrument);
    EXPECT_EQ(m_paper.of("A1")->getMapDataRef(knservice::kFeeTable).begin()->second, fees.begin()->second)
        << "made once";
}

TEST_F(PaperAccounts, AccountsAreFoundByDisplayIdThenByKeyWithinTheirKind) {
    constexpr int kStocks = static_cast<int>(TC::EQDBrokerType::Stock);
    EXPECT_EQ(m_paper.keyOf("10001", kStocks), "A1");
    EXPECT_EQ(m_paper.keyOf("A1", kStocks), "A3") << "it is the display id of A3";
    EXPECT_EQ(m_paper.keyOf("A2", kStocks), "A2") << "it has no display id";
    EXPECT_EQ(m_paper.keyOf("A3", kStocks), "A3") << "no display id is like this key";
    EXPECT_EQ(m_paper.keyOf("10001", static_cast<int>(TC::EQDBrokerType::Credit)), "");
    EXPECT_EQ(m_paper.keyOf("10001", -1), "");
    EXPECT_EQ(m_paper.keyOf("", kStocks), "");
}

TEST_F(PaperAccounts, ATableIsReadOnceAndThenDoesNotChange) {
    const auto data = m_paper.of("A1");
    EXPECT_TRUE(data->getMapData(knservice::kOrderTable).empty());
    place(TC::EOperationType::Buy, 1);
    EXPECT_TRUE(data->getMapData(knservice::kOrderTable).empty());
    EXPECT_EQ(m_paper.of("A1")->getMapData(knservice::kOrderTable).size(), 1U);
}

TEST_F(PaperAccounts, HoldingTheLockKeepsTheBrokerFree) {
    const auto data = m_paper.of("A2");
    const knservice::CAccountData::Lock lock(*data);
    EXPECT_TRUE(m_broker.startTradingDay("20260106").isSuccess());
    EXPECT_TRUE(m_paper.of("A2"));
}

} // namespace
} // namespace desk
