// The volumes of function trading.
#include "orderservice/func/FuncVolumes.h"

#include "orderservice/func/FuncTables.h"
#include "tests/func/AccountFakes.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

namespace {

using namespace TC;

constexpr double kNoLimit = DBL_MAX;

class FuncVolumes : public testing::Test {
protected:
    FuncVolumes() {
        host.user.addAccount("A1");
        account = boost::make_shared<CFakeFuncAccount>(host.user.accounts.at("A1"));
        host.tasks.accountData["A1"] = account;
        host.tasks.calculator = &calculator;
    }
    std::int64_t can(double usable, EOperationType op = EOperationType::Buy) {
        account->m_dUsable = usable;
        return getCanOrderVolume("A1", op, code, 10.5);
    }
    /// The volume for a ratio of the assets.
    std::int64_t ofAssets(double assets, double price, double percent = 0.5,
                          EOperationType op = EOperationType::Buy) {
        account->m_detail = boost::make_shared<knservice::CAccountDetail>();
        account->m_detail->m_dAssetForRatio = assets;
        account->m_detail->m_dAssetCheck = 1;
        return getAccountPercentNum("A1", op, 1113, code, price, percent);
    }
    std::int64_t ofUsable(double usable, double percent, EOperationType op = EOperationType::Buy) {
        account->m_dUsable = usable;
        return getAccountPercentNum("A1", op, 1123, code, 10, percent);
    }
    void setMultiplier(double multiplier, const char* market = "SH") {
        const auto detail = boost::make_shared<CInstrumentDetail>(*host.exchange.stocks.at(code));
        detail->m_dMultiplier = multiplier;
        detail->m_strMarket = market;
        host.exchange.stocks[code] = detail;
    }

    CFakeHost host;
    boost::shared_ptr<CFakeFuncAccount> account;
    CFakeCalculator calculator;
    const QString code = QStringLiteral("SH600000");
};

TEST_F(FuncVolumes, UsableVolumeIsAskedWithTheInstrument) {
    EXPECT_EQ(can(1234.9), 1234);
    EXPECT_EQ(account->m_calls, (std::vector<std::string>{"SH600000 op 18 hedge 49 at 10.500000"}));
}

TEST_F(FuncVolumes, UsableVolumeIsNeverBelowZeroAndMayHaveNoLimit) {
    EXPECT_EQ(can(-5), 0);
    EXPECT_EQ(can(std::nan("")), 0);
    EXPECT_EQ(can(kNoLimit), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(can(9.3e18), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(can(4294967396.0), 4294967396);
}

TEST_F(FuncVolumes, NothingIsUsableWithoutLogInDataOrInstrument) {
    account->m_dUsable = 100;
    EXPECT_EQ(getCanOrderVolume("A1", EOperationType::Buy, QStringLiteral("SH999999"), 1), 0);
    EXPECT_EQ(getCanOrderVolume("A2", EOperationType::Buy, code, 1), 0);
    host.trade.loginStatus["A1"] = 1;
    EXPECT_EQ(getCanOrderVolume("A1", EOperationType::Buy, code, 1), 0);
    EXPECT_EQ(ofUsable(1000, 0.5), 0);
    EXPECT_EQ(getAccountFuturesNum("A1", code, 1e6, 1), 0);
}

TEST_F(FuncVolumes, RatioOfWhatCanBeOrdered) {
    EXPECT_EQ(ofUsable(1000, 0.5), 500);
    EXPECT_EQ(ofUsable(999, 0.5), 400); // whole units of 100
    EXPECT_EQ(ofUsable(1000, 1), 1000);
    EXPECT_EQ(ofUsable(1000, 0), 0);
    EXPECT_EQ(ofUsable(kNoLimit, 0.5), 0); // the largest double is no figure
    EXPECT_EQ(ofUsable(-1000, 0.5), 0);
}

TEST_F(FuncVolumes, RatioOfTheAssets) {
    account->m_dUsable = kNoLimit;
    EXPECT_EQ(ofAssets(100000, 10), 5000);
    EXPECT_EQ(ofAssets(100000, 9.99), 5000); // 5005 in units of 100
    account->m_dUsable = 777;
    EXPECT_EQ(ofAssets(100000, 10), 700); // never more than can be ordered
}

TEST_F(FuncVolumes, RatioOfTheAssetsNeedsPriceAndFigures) {
    account->m_dUsable = kNoLimit;
    EXPECT_EQ(ofAssets(100000, 0), 0);
    EXPECT_EQ(ofAssets(100000, 1e-5), 0);
    EXPECT_EQ(ofAssets(100000, DBL_MAX), 0);
    EXPECT_EQ(ofAssets(100000, std::nan("")), 0);
    EXPECT_EQ(ofAssets(DBL_MAX, 10), 0);
    account->m_detail->m_dAssetForRatio = 100000;
    account->m_detail->m_dAssetCheck = DBL_MAX;
    EXPECT_EQ(getAccountPercentNum("A1", EOperationType::Buy, 1213, code, 10, 0.5), 0);
    account->m_detail = nullptr;
    EXPECT_EQ(getAccountPercentNum("A1", EOperationType::Buy, 1213, code, 10, 0.5), 0);
}

TEST_F(FuncVolumes, MultiplierDividesTheAssets) {
    account->m_dUsable = kNoLimit;
    host.types.units["SH600000"] = 1;
    setMultiplier(300);
    EXPECT_EQ(ofAssets(12000000, 4000), 5);
    // For the operations 23 and 24 the multiplier is 1.
    EXPECT_EQ(ofAssets(12000000, 4000, 0.5, EOperationType::ReturnShares), 1500);
    setMultiplier(DBL_MAX, "IF"); // a contract whose multiplier is not known
    EXPECT_EQ(ofAssets(12000000, 4000), 0);
    setMultiplier(DBL_MAX, "SH"); // a stock has the multiplier 1
    EXPECT_EQ(ofAssets(12000000, 4000), 1500);
}

TEST_F(FuncVolumes, CalculatorLimitsTheOperations23And24) {
    calculator.m_nLimit = 250;
    EXPECT_EQ(ofUsable(1000, 0.5), 500);
    EXPECT_TRUE(calculator.m_calls.empty());
    EXPECT_EQ(ofUsable(1000, 0.5, EOperationType::ReturnShares), 250);
    EXPECT_EQ(ofUsable(400, 0.5, EOperationType::SellToRepay), 200);
    EXPECT_EQ(calculator.m_calls.front(), "A1 SH600000 op 23 hedge 49 at 10.000000 kinds 48 48 of "
                                          "9223372036854775807 whole -1");
    host.tasks.calculator = nullptr;
    EXPECT_EQ(ofUsable(1000, 0.5, EOperationType::ReturnShares), 500);
}

TEST_F(FuncVolumes, MoneyBuysContractsByTheFeeRecord) {
    const auto fee = boost::make_shared<knservice::CInstrumentFee>();
    setMultiplier(300, "IF");
    fee->m_instrument = host.exchange.stocks.at(code);
    EXPECT_EQ(getAccountFuturesNum("A1", code, 2500000, 4000), 0); // no record
    account->m_fees["A1____IF____600000"] = fee;
    EXPECT_EQ(getAccountFuturesNum("A1", code, 2500000, 4000), 2);
    EXPECT_FALSE(account->m_bReadUnlocked);
    EXPECT_EQ(getAccountFuturesNum("A1", code, 1e-5, 4000), 0);
    EXPECT_EQ(getAccountFuturesNum("A1", code, 2500000, 0), 0);
    EXPECT_EQ(getAccountFuturesNum("A1", code, 2500000, DBL_MAX), 0);
    EXPECT_EQ(getAccountFuturesNum("A1", code, 1e300, 1e-3), 2147483646); // no order can hold it
    EXPECT_EQ(getAccountFuturesNum("A1", code, -1e300, 1e-3), -2147483646);
    EXPECT_EQ(getAccountFuturesNum("A1", code, std::nan(""), 4000), 0);
    for (const double multiplier : {0.0, DBL_MAX}) {
        const auto detail = boost::make_shared<CInstrumentDetail>();
        detail->m_dMultiplier = multiplier;
        fee->m_instrument = detail;
        EXPECT_EQ(getAccountFuturesNum("A1", code, 2500000, 4000), 0);
    }
    account->m_fees["A1____IF____600000"] = boost::make_shared<CAccountInfo>(); // another kind of record
    EXPECT_EQ(getAccountFuturesNum("A1", code, 2500000, 4000), 0);
}

TEST_F(FuncVolumes, LegalVolumes) {
    const auto legal = [](EOperationType op, std::int64_t volume, std::int64_t usable, int unit = 100) {
        return calcRightOrderVolume(op, volume, unit, usable);
    };
    EXPECT_EQ(legal(EOperationType::Sell, 150, 150), 150);
    EXPECT_EQ(legal(EOperationType::Sell, 150, 200), 100);
    EXPECT_EQ(legal(EOperationType::Sell, 200, 500), 200);
    EXPECT_EQ(legal(EOperationType::Buy, 150, 150), 100);
    EXPECT_EQ(legal(EOperationType{1043}, 250, 0), 250);
    EXPECT_EQ(legal(EOperationType{1043}, 200, 0), 200);
    EXPECT_EQ(legal(EOperationType{1043}, 150, 0), 100);
    EXPECT_EQ(legal(EOperationType::Buy, 7, 0, 1), 7);
    EXPECT_EQ(legal(EOperationType::Buy, 99, 0), 0);
}

TEST(FuncMarkets, FuturesMarkets) {
    for (const char* market : {"DF", "DCE", "ZF", "CZCE", "SF", "SHFE", "IF", "CFFEX", "INE"})
        EXPECT_TRUE(isFuturesMarket(market)) << market;
    for (const char* market : {"", "SH", "SZ", "if", "SHFE ", "GFEX"})
        EXPECT_FALSE(isFuturesMarket(market)) << market;
}

} // namespace
