#pragma once

#include "orderservice/records/Families.h"
#include "orderservice/records/StrategyParam.h"

#include "tests/support/Builders.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <utility>

/// The fake host with an instrument for each family. All quotes have trades of today.
class FamilyHost : public testing::Test {
protected:
    FamilyHost() {
        using TC::EQDBrokerType;
        host.types.types.insert({100003, "SH600000"});
        for (const auto& [list, key] : {std::pair{"future", "IF2609"},
                                        {"option", "SHO10000001"},
                                        {"future option", "IO2609"},
                                        {"sgt", "SGT00001"},
                                        {"hgt", "HGT00700"},
                                        {"gold", "GOLDAU9999"},
                                        {"neeq", "NEEQ430001"}})
            enlist(list, QString::fromLatin1(key));
        host.quotes.quotes[QStringLiteral("SH600000")]->m_nDayCount = 1;
        for (const auto type :
             {EQDBrokerType::Future, EQDBrokerType::Credit, EQDBrokerType::Gold, EQDBrokerType::FutureOption,
              EQDBrokerType::StockOption, EQDBrokerType::HGT, EQDBrokerType::Neeq, EQDBrokerType::SGT})
            host.user.addGroup(type, "G", {{"A1", 0.6}, {"A2", 0.4}});
    }
    void enlist(const char* list, const QString& key) {
        const auto detail = boost::make_shared<TC::CInstrumentDetail>();
        detail->m_strCode = key.toStdString();
        host.exchange.others[key] = detail;
        host.exchange.lists.insert({list, key});
        const auto quote = boost::make_shared<fake::CQuote>();
        quote->all(10.5);
        host.quotes.quotes[key] = quote;
    }
    static CStrategyBuilder strategyOf(TC::EOrderStrategyTradeType family) {
        return CStrategyBuilder().family(family).set([&](auto& s) {
            s.setting(TC::findFamily(family)->m_eSlot).m_ePriceType = TC::EPriceType::Specified;
        });
    }

    CFakeClock clock;
    CFakeHost host;
    TC::COrderStrategyMap strategies;
};
