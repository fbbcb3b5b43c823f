#include "desk/host/PaperPositions.h"

#include "desk/host/DeskUserConfig.h"
#include "desk/market/Market.h"
#include "orderservice/records/Portfolio.h"
#include "tests/support/TempFolder.h"

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

CAccountEntry makeAccount(const std::string& key, std::vector<CPositionEntry> positions) {
    CAccountEntry entry;
    entry.key = key;
    entry.positions = std::move(positions);
    return entry;
}

CDeskConfig configOf(const std::vector<CAccountEntry>& accounts) {
    CDeskConfig config;
    config.accounts = accounts;
    return config;
}

class PaperPositions : public testing::Test {
protected:
    void SetUp() override {
        const utils::KNError opened = m_broker.open(m_folder.path(), m_accounts, 0);
        ASSERT_TRUE(opened.isSuccess()) << opened.errorMsg();
    }

    CTempFolder m_folder;
    const std::vector<CAccountEntry> m_accounts = {
        makeAccount("A1", {makePosition("SH600000", 500, 300), makePosition("SZ000001", 200, 200),
                           makePosition("SH600009", 100, 100)}),
        makeAccount("A2", {makePosition("SH600000", 700, 700)}), makeAccount("A3", {})};
    const CMarket m_market{{makeInstrument("SH", "600000"), makeInstrument("SZ", "000001")}, {}, {}};
    CPaperBroker m_broker{m_market, [](const std::vector<CBrokerEvent>& events) { return events.size(); }};
    const CDeskUserConfig m_user{configOf(m_accounts)};
    const CPaperPositions m_positions{m_broker, m_market, m_user};
};

TEST_F(PaperPositions, WhatAnAccountCanOrderIsKnownForSales) {
    const auto data = m_positions.of("A1");
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

TEST_F(PaperPositions, AnAccountHasItsOwnWithWhatCanBeSold) {
    const auto data = m_positions.of("A1");
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

TEST_F(PaperPositions, OtherTablesAreEmpty) {
    const auto data = m_positions.of("A1");
    std::vector<boost::shared_ptr<knservice::IData>> records;
    data->getVector(knservice::kPortfolioTable, records);
    EXPECT_TRUE(records.empty());
    EXPECT_TRUE(data->getMapData(knservice::kPortfolioTable).empty());
}

TEST_F(PaperPositions, AnAccountWithoutPositionsIsThereAndAnUnknownOneIsNot) {
    const auto data = m_positions.of("A3");
    ASSERT_TRUE(data);
    EXPECT_TRUE(data->getMapData(knservice::kPositionTable).empty());
    EXPECT_FALSE(m_positions.of("A9"));
}

TEST_F(PaperPositions, HoldingTheLockKeepsTheBrokerFree) {
    const auto data = m_positions.of("A2");
    const knservice::CAccountData::Lock lock(*data);
    EXPECT_TRUE(m_broker.startTradingDay("20260106").isSuccess());
    EXPECT_TRUE(m_positions.of("A2"));
}

} // namespace
} // namespace desk
