// Edges that the order routines share: prices that are no price, volumes that no record can hold, empty
// entries in the list of accounts, and what the host is asked.
#include "orderservice/base/Log.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "tests/func/RoutineFixture.h"
#include "tests/support/LogCapture.h"

#include <cmath>
#include <limits>

namespace {

using namespace TC;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

void stockRoutine(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                  const CFuncReporter& reporter) {
    orderStock(param, strategy, reporter, {});
}

/// A call of one routine that succeeds.
struct CRoutineCase {
    const char* name;
    void (*routine)(const COrderFuncParam&, const COrderStrategyParam&, const CFuncReporter&);
    const char* opType;
    const char* code;    ///< orderCode
    const char* fullKey; ///< key of the instrument
    const char* account;
    EQDBrokerType broker;
    ESettingSlot slot;
    const char* logLine;
};

const CRoutineCase kCases[] = {
    {"Stock", stockRoutine, "23", "600000", "SH600000", "A1", EQDBrokerType::Stock, ESettingSlot::Stock,
     "placeCommands: [orderservice] stock speculation."},
    {"Future", orderSpec, "0", "IF2609", "IF2609", "F1", EQDBrokerType::Future, ESettingSlot::Future,
     "placeCommands: [orderservice] future speculation."},
    {"Credit", orderCredit, "27", "600000", "SH600000", "C1", EQDBrokerType::Credit, ESettingSlot::Credit,
     "placeCommands: [orderservice] credit operation."},
    {"Option", orderOption, "50", "10001234", "10001234", "O1", EQDBrokerType::StockOption,
     ESettingSlot::StockOption, "placeCommands: [orderservice] stock speculation."},
};

class RoutineEdges : public RoutineFixture, public testing::WithParamInterface<CRoutineCase> {
protected:
    RoutineEdges() {
        const CRoutineCase& row = GetParam();
        if (host.user.accounts.count(row.account) == 0) {
            host.user.addAccount(row.account, row.broker);
            addData(row.account);
        }
        host.exchange.addOther("future", QStringLiteral("IF2609"));
        host.exchange.addOther("option", QStringLiteral("10001234"));
        addQuote(QString::fromUtf8(row.fullKey), 10, 9, 11);
        defaults = {
            {"opType", row.opType},          {"orderType", "1101"},      {"prType", "11"},
            {"modelPrice", "\"10\""},        {"modelVolume", "\"300\""}, {"accountID", quoted(row.account)},
            {"orderCode", quoted(row.code)}, {"tradeKey", "\"x|key|7\""}};
    }
    static std::string quoted(const std::string& text) { return '"' + text + '"'; }
    void order(const std::map<std::string, std::string>& changes = {}) { call(GetParam().routine, changes); }
    /// Runs the routine again with the strategy as the test has changed it.
    void repeat() {
        forget();
        failures.clear();
        GetParam().routine(param, strategy, reporter());
    }
    CFuncReporter reporter() { return {param.m_strTradeKey, m_callback}; }
    void expectNothingSent(const char* why) {
        EXPECT_TRUE(host.commands().empty()) << why;
        EXPECT_EQ(failures.size(), 1u) << why;
    }
    void useGroupWithNullFirst() {
        strategy.m_eSelectedAccountType = ESelectedAccountType::Group;
        strategy.m_strSelectedAccount = QStringLiteral("nulls");
        auto& group = host.user.groups[{GetParam().broker, "nulls"}];
        group.m_accounts = {"null", GetParam().account};
        host.user.accounts["null"] = nullptr;
        host.user.groupRatios[{GetParam().broker, "nulls"}] = {1, 1};
    }

    const COrderFailedCallback m_callback = [this](const int& id, const std::string& key,
                                                   const utils::KNError& error) {
        failures.push_back({id, key, error.errorMsg()});
    };
};

TEST_P(RoutineEdges, ModelPriceMustBeASetAndFiniteNumber) {
    for (const char* price : {"inf", "nan", "1e400", "1.7976931348623157e308"}) {
        forget();
        order({{"modelPrice", quoted(price)}});
        expectNothingSent(price);
    }
}

TEST_P(RoutineEdges, WithoutALineThereIsNoModelPrice) {
    order();
    param.m_orders.clear();
    strategy.m_strCode = QString::fromUtf8(GetParam().fullKey);
    repeat();
    expectNothingSent("no line");
}

TEST_P(RoutineEdges, PriceThatTheHostStampsMustBeAPrice) {
    for (const double price : {0.0, -1.0, 1e-5, kInfinity, kUnsetDouble, std::nan("")}) {
        forget();
        host.rules.onFixTimeRange = [&](CCodeOrderParam& record) { record.m_dPrice = price; };
        order();
        expectNothingSent(std::to_string(price).c_str());
    }
}

TEST_P(RoutineEdges, VolumesBeyondAnIntAreNeverSent) {
    for (const char* volume : {"1e20", "1e400", "2147483646", "2147483647", "4294967396"}) {
        forget();
        host.trade.split = [](const fake::CSplitCall& split, utils::KNError& error) {
            if (!isUnset(split.volume)) return std::vector<int>(split.accounts.size(), split.volume);
            error = utils::KNError(1, "no volume");
            return std::vector<int>();
        };
        order({{"modelVolume", quoted(volume)}}); // the fake host has no limit
        expectNothingSent(volume);
    }
}

TEST_P(RoutineEdges, EmptyEntriesOfTheAccountsArePassedOver) {
    order();
    useGroupWithNullFirst();
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{100, 300}; };
    repeat();
    ASSERT_EQ(onlyCommand()->m_codes.size(), 1u);
    EXPECT_EQ(onlyCommand()->m_codes[0].m_account->getKey(), GetParam().account);
    EXPECT_EQ(onlyCommand()->m_codes[0].m_nVolume, 300); // its own, not that of the empty entry
    host.user.accounts.erase("null");
}

TEST_P(RoutineEdges, SettingIsThatOfTheFamily) {
    order({{"prType", "-1"}});
    strategy.setting(GetParam().slot).m_strCmdLog = "log of the setting";
    strategy.setting(GetParam().slot).m_ePriceType = EPriceType::Buy1;
    repeat();
    EXPECT_EQ(onlyCommand()->m_strRemark, "log of the setting");
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_ePriceType, EPriceType::Buy1);
}

TEST_P(RoutineEdges, LimitsOfTheSettingMustBeNumbers) {
    order();
    COrderSetting& setting = strategy.setting(GetParam().slot);
    setting.m_bFirstLimitOn = setting.m_bSecondLimitOn = true;
    setting.m_dFirstLimit = kInfinity;
    setting.m_dSecondLimit = 12;
    bool isSeen = false;
    host.rules.onSetting = [&](const COrderSetting& given) {
        isSeen = true;
        EXPECT_FALSE(given.m_bFirstLimitOn);
        EXPECT_EQ(given.m_dFirstLimit, kUnsetDouble);
        EXPECT_TRUE(given.m_bSecondLimitOn);
        EXPECT_EQ(given.m_dSecondLimit, 12);
    };
    repeat();
    EXPECT_TRUE(isSeen);
    host.rules.onSetting = {};
}

TEST_P(RoutineEdges, AccountsAreThoseOfTheFamilysKind) {
    order();
    const auto calls = host.user.accountsCalls.all();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].broker, GetParam().broker);
    EXPECT_EQ(calls[0].kind, ESelectedAccountType::Account);
    EXPECT_EQ(calls[0].name, QString::fromUtf8(GetParam().account));
    EXPECT_FALSE(calls[0].simple);
}

TEST_P(RoutineEdges, RecordIsStampedByTheHost) {
    bool isFixed = false;
    host.rules.onFixTimeRange = [&](CCodeOrderParam&) { isFixed = true; };
    order();
    EXPECT_TRUE(isFixed);
    strategy.m_ePositionType = static_cast<EPositionType>(3);
    repeat();
    const CCodeOrderParam& record = onlyCommand()->m_codes.at(0);
    EXPECT_EQ(static_cast<int>(record.m_ePositionType), 3);
    EXPECT_EQ(static_cast<int>(record.m_eHedgeFlag), 49);
    EXPECT_EQ(record.m_strUserId, "tester");
}

TEST_P(RoutineEdges, CommandIsLogged) {
    const CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    order();
    ASSERT_FALSE(log.lines().empty());
    EXPECT_NE(log.lines().back().text.find(GetParam().logLine), std::string::npos);
    EXPECT_EQ(log.lines().back().level, 20000);
}

TEST_P(RoutineEdges, ForceConfirmIsASwitch) {
    host.switches.on.insert("mdl_order_service_force_confirm");
    order();
    EXPECT_TRUE(onlyCommand()->m_bForceConfirm);
    EXPECT_EQ(onlyCommand()->m_eBtnType, EFtSpecBtnBarType::None);
    EXPECT_EQ(onlyCommand()->m_eStopLossType, EQdStopLossType::None);
    EXPECT_FALSE(onlyCommand()->m_bCommandFlag);
    EXPECT_EQ(onlyCommand()->m_strFuncMessage, "");
}

INSTANTIATE_TEST_SUITE_P(Routines, RoutineEdges, testing::ValuesIn(kCases),
                         [](const auto& row) { return std::string(row.param.name); });

// What only one family has.

class FutureEdges : public RoutineFixture {
protected:
    FutureEdges() {
        addFutureAccount("F1");
        host.exchange.addOther("future", QStringLiteral("IF2609"));
        addQuote(QStringLiteral("IF2609"), 4000, 3600, 4400);
        defaults = {{"opType", "0"},          {"orderType", "1101"},   {"prType", "5"},
                    {"modelVolume", "\"3\""}, {"accountID", "\"F1\""}, {"orderCode", "\"IF2609\""},
                    {"modelPrice", "\"0\""}};
    }
};

TEST_F(FutureEdges, LimitsOfTheLineReplaceThoseOfTheSetting) {
    call(orderSpec);
    param.m_orders[0].m_bHasFirstLimit = true;
    param.m_orders[0].m_dFirstLimit = 4100;
    param.m_orders[0].m_bHasSecondLimit = true; // without a value it switches the limit off
    strategy.setting(ESettingSlot::Future).m_bSecondLimitOn = true;
    strategy.setting(ESettingSlot::Future).m_dSecondLimit = 3900;
    forget();
    orderSpec(param, strategy, CFuncReporter(param.m_strTradeKey, {}));
    const COrderSetting given = host.rules.settingCalls.all().back().setting;
    EXPECT_TRUE(given.m_bFirstLimitOn);
    EXPECT_EQ(given.m_dFirstLimit, 4100);
    EXPECT_FALSE(given.m_bSecondLimitOn);
}

TEST_F(FutureEdges, MultiplierThatIsNotKnownGivesNoShareOfTheAssets) {
    const auto assets = boost::make_shared<knservice::CAccountDetail>();
    assets->m_dAssetForRatio = assets->m_dAssetCheck = 1e7;
    accounts["F1"]->m_detail = assets;
    call(orderSpec, {{"orderType", "1113"}, {"modelVolume", "\"0.5\""}});
    EXPECT_TRUE(onlyCommand()->m_codes.empty()); // the fixture's market is not a known one
    EXPECT_EQ(failures.size(), 1u);
}

class StockEdges : public RoutineFixture {
protected:
    StockEdges() {
        addQuote(QStringLiteral("SH600000"), 10, 9, 11);
        host.types.types.insert({knservice::kTypeStarMarket, "SH600000"});
        defaults = {{"opType", "23"},           {"orderType", "1101"},   {"prType", "49"},
                    {"modelVolume", "\"300\""}, {"accountID", "\"A1\""}, {"orderCode", "\"600000\""},
                    {"modelPrice", "\"50\""}};
    }
};

TEST_F(StockEdges, OnlyPhase22HasItsOwnPrice) {
    for (const double phase : {kUnsetDouble, std::nan(""), kInfinity, 22.5, 21.0, -1e300}) {
        forget();
        host.quotes.quotes[QStringLiteral("SH600000")]->m_dPhase = phase;
        call(stockRoutine);
        EXPECT_TRUE(host.commands().empty()) << phase;
        EXPECT_EQ(failures.size(), 1u) << phase; // 50 is beyond the limit
    }
    forget();
    host.quotes.quotes[QStringLiteral("SH600000")]->m_dPhase = 22;
    call(stockRoutine);
    EXPECT_EQ(onlyCommand()->m_codes.size(), 1u);
}

TEST_F(StockEdges, NothingIsWrittenForAnAlgorithmIfTheUserMayNotSend) {
    const CLogCapture log;
    host.user.kind = 5;
    call(
        [](const COrderFuncParam& of, const COrderStrategyParam& with, const CFuncReporter& to) {
            utils::CLogCenter::setLogEnabled(true);
            orderStock(of, with, to, "{}");
        },
        {{"prType", "11"}, {"modelPrice", "\"10\""}});
    EXPECT_TRUE(host.commands().empty());
    for (const CLogLine& line : log.lines())
        EXPECT_EQ(line.text.find("smartAlgoParam"), std::string::npos);
}

TEST_F(StockEdges, UnitIsAskedForAnyOperation) {
    call(stockRoutine, {{"prType", "11"}, {"modelPrice", "\"10\""}});
    EXPECT_EQ(host.types.unitOperations, std::vector<int>{static_cast<int>(unsetEnum<EOperationType>())});
}

} // namespace
