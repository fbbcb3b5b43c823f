#include "desk/config/StrategyCompare.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace desk {
namespace {

struct CChangedField {
    const char* m_pszKey;
    void (*m_pfnChange)(TC::COrderStrategyParam&);
};

const CChangedField kChanges[] = {
    {"channel", [](auto& s) { s.m_nChannel = 2; }},
    {"name", [](auto& s) { s.m_strName = QStringLiteral("n"); }},
    {"account", [](auto& s) { s.m_eSelectedAccountType = TC::ESelectedAccountType::Account; }},
    {"account", [](auto& s) { s.m_strSelectedAccount = QStringLiteral("a"); }},
    {"family", [](auto& s) { s.m_eTradeType = TC::EOrderStrategyTradeType::Gold; }},
    {"position_type", [](auto& s) { s.m_ePositionType = static_cast<TC::EPositionType>(1); }},
    {"source", [](auto& s) { s.m_eStrategyType = TC::EOrderStrategyType::Signal; }},
    {"account_mode", [](auto& s) { s.m_nAccountMode = 1; }},
    {"path", [](auto& s) { s.m_strSignalSource = QStringLiteral("p"); }},
    {"user", [](auto& s) { s.m_strUser = QStringLiteral("u"); }},
    {"pass", [](auto& s) { s.m_strPass = QStringLiteral("p"); }},
    {"code", [](auto& s) { s.m_strCode = QStringLiteral("c"); }},
    {"setting", [](auto& s) { s.m_stockSetting.m_strCmdLog = "r"; }},
    {"setting", [](auto& s) { s.m_furtherSettings.back().m_bSecondLimitOn = true; }},
    {"volume", [](auto& s) { s.m_nVolume = 2; }},
    {"further1", [](auto& s) { s.m_nFurther1 = 2; }},
    {"further2", [](auto& s) { s.m_nFurther2 = 2; }},
    {"use_amount", [](auto& s) { s.m_bUseAmount = true; }},
    {"amount", [](auto& s) { s.m_dAmount = 1; }},
    {"by_percent", [](auto& s) { s.m_bByPercent = true; }},
    {"percent", [](auto& s) { s.m_dPercent = 1; }},
    {"hedge_basket", [](auto& s) { s.m_bHedgeBasket = true; }},
    {"command_flag", [](auto& s) { s.m_bCommandFlag = true; }},
    {"order_type", [](auto& s) { s.m_eOrderType = TC::EOrderType::Plain; }},
    {"algorithm setting",
     [](auto& s) { s.m_algoSetting = boost::make_shared<TC::CAlgorithmOrderSetting>(); }},
    {"hedge_param",
     [](auto& s) {
         s.m_hedgeParam = bson::BSONObj({0x0c, 0, 0, 0, 0x10, 'a', 0, 1, 0, 0, 0, 0});
     }},
};

TEST(StrategyCompare, EveryChangedFieldIsNamed) {
    for (const CChangedField& change : kChanges) {
        TC::COrderStrategyParam changed;
        change.m_pfnChange(changed);
        const char* different = firstDifference({}, changed);
        ASSERT_NE(different, nullptr) << change.m_pszKey;
        EXPECT_EQ(different, std::string(change.m_pszKey));
    }
}

TEST(StrategyCompare, RunningAndStartsDoNotCount) {
    TC::COrderStrategyParam started;
    started.m_nStatus = TC::COrderStrategyParam::kRunning;
    started.m_nStartCount = 3;
    EXPECT_EQ(firstDifference({}, started), nullptr);
}

TEST(StrategyCompare, WhatIsNoNumberEqualsItself) {
    TC::COrderStrategyParam strategy;
    strategy.m_dAmount = strategy.m_stockSetting.m_dFirstLimit = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(firstDifference(strategy, strategy), nullptr);
}

} // namespace
} // namespace desk
