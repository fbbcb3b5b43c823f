// Rows that a basket leaves out without a message: the reports of them in the audit.
#include "tests/check/BasketFixture.h"

#include <limits>

namespace {

using namespace TC;

class BasketLeftOut : public BasketFixture {
protected:
    /// The incidents as "event channel rows code: cause".
    std::vector<std::string> incidents() {
        std::vector<std::string> texts;
        for (const CIncidentReport& report : host.audit.incidents)
            texts.push_back(std::to_string(static_cast<int>(report.m_eIncident)) + " " +
                            std::to_string(report.m_nChannel) + " " + std::to_string(report.m_nRows) + " " +
                            report.m_strCode.toStdString() + ": " + report.m_strCause.toStdString());
        return texts;
    }
    /// The only incident of an order that is not refused, without its event and channel.
    std::string onlyIncident(const COrderParam& order, const COrderStrategyParam& with) {
        host.audit.incidents.clear();
        EXPECT_TRUE(check(order, with));
        EXPECT_TRUE(host.errorTexts().empty()) << host.errorTexts().front().toStdString();
        const std::vector<std::string> all = incidents();
        EXPECT_EQ(all.size(), 1u);
        if (all.size() != 1) return {};
        const std::string head = std::to_string(static_cast<int>(EIncident::RowsLeftOut)) + " 3 ";
        EXPECT_EQ(all[0].substr(0, head.size()), head);
        return all[0].substr(head.size());
    }
    std::string onlyIncident(const COrderParam& order) { return onlyIncident(order, strategy()); }
    static COrderParam all() {
        return COrderBuilder(26).set([](auto& o) { o.m_bAll = true; });
    }
    knservice::CPositionStaticsPtr hold(const char* code, int volume) {
        return host.tasks.addPosition(host.user.accounts.at("A1"), "SH", code, volume);
    }
    void suspend(const char* key) { host.quotes.quotes.at(QString::fromLatin1(key))->m_nDayCount = 0; }
};

TEST_F(BasketLeftOut, RightOrdersBringNoReport) {
    hold("600001", 300);
    EXPECT_TRUE(check(basket(25, {{"600001", 100}, {"SH600002", 200}, {"600002", 0}})));
    EXPECT_TRUE(check(basket(34, {{"600001", 300}, {"600002", 0}}))); // already at the targets
    EXPECT_TRUE(check(all()));
    EXPECT_EQ(incidents(), std::vector<std::string>());
}

TEST_F(BasketLeftOut, InstrumentsWithNothingToTradeAreNotReported) {
    suspend("SH600001");
    suspend("SH600002");
    hold("600002", 0);
    EXPECT_TRUE(check(basket(34, {{"600001", 0}}), strategy().amount(5000)));
    EXPECT_TRUE(check(all()));
    EXPECT_EQ(incidents(), std::vector<std::string>());
}

TEST_F(BasketLeftOut, CodesThatNameNoStockAreCountedAndTheFirstIsNamed) {
    EXPECT_EQ(onlyIncident(basket(25, {{"600001", 100}, {"600009", 100}, {"x", 100}})),
              "2 600009: the code is not a stock that can be traded");
    EXPECT_EQ(records(), "A1 18 60 600001, A2 18 40 600001, ");
}

TEST_F(BasketLeftOut, InstrumentWithoutDetailsIsNamed) {
    host.exchange.stocks[QStringLiteral("SH600001")] = nullptr;
    EXPECT_EQ(onlyIncident(basket(25, {{"600001", 100}, {"600002", 100}})),
              "1 600001: the instrument is unknown");
}

TEST_F(BasketLeftOut, SuspendedInstrumentIsNamed) {
    suspend("SH600002");
    EXPECT_EQ(onlyIncident(basket(25, {{"600001", 100}, {"600002", 100}})),
              "1 SH600002: the instrument is suspended: its quote has no figures of today");
}

TEST_F(BasketLeftOut, InstrumentOfAWrongTypeIsNamed) {
    host.types.types.erase({100003, "SH600001"});
    EXPECT_EQ(onlyIncident(basket(25, {{"600001", 100}})),
              "1 SH600001: a basket cannot have an instrument of this type");
    EXPECT_TRUE(codes.empty());
}

TEST_F(BasketLeftOut, VolumeBelowZeroIsNamed) {
    EXPECT_EQ(onlyIncident(basket(25, {{"600001", -100}, {"600002", 100}})),
              "1 600001: the volume is below zero");
    const auto money = basket(25, {{"600001", 1}, {"600002", 1}}).set([](auto& o) {
        o.m_orders[0].m_dWeight = -1.0;
        o.m_orders[1].m_dWeight = 3.0;
    });
    EXPECT_EQ(onlyIncident(money, strategy().amount(10000)), "1 SH600001: the volume is below zero");
}

TEST_F(BasketLeftOut, FailedSplitBringsTheHostsText) {
    host.trade.split = [](const fake::CSplitCall& call, utils::KNError& error) {
        if (call.code != "600001") return std::vector<int>{60, 40};
        error = utils::KNError(7, "no room on A2");
        return std::vector<int>{};
    };
    EXPECT_EQ(onlyIncident(basket(25, {{"600001", 100}, {"600002", 100}})),
              "1 SH600001: the split over the accounts failed: no room on A2");
    EXPECT_EQ(records(), "A1 18 60 600002, A2 18 40 600002, ");
}

/// The message about the missing price is enough, even if the host refuses to split a volume of zero.
TEST_F(BasketLeftOut, RowWithoutAPriceBringsNoReport) {
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{}; };
    host.quotes.quotes.at(QStringLiteral("SH600001"))->all(0);
    EXPECT_TRUE(check(basket(25, {{"600001", 100}})));
    EXPECT_EQ(host.errorTexts().size(), 1u);
    EXPECT_EQ(host.trade.splitCalls.size(), 1u);
    EXPECT_EQ(incidents(), std::vector<std::string>());
}

TEST_F(BasketLeftOut, PositionsThatAreNotSoldAreNamed) {
    hold("600001", 700);
    suspend("SH600001");
    EXPECT_EQ(onlyIncident(all()),
              "1 SH600001: the instrument is suspended: its quote has no figures of today");
    hold("600002", 700)->m_nAvailableVolume = -1;
    EXPECT_EQ(onlyIncident(all()).substr(0, 11), "2 SH600001:");
    host.tasks.positions.clear();
    hold("600002", 700)->m_nAvailableVolume = -1;
    EXPECT_EQ(onlyIncident(all()), "1 SH600002: the volume is below zero");
    host.tasks.positions.clear();
    hold("600002", 700)->m_nAvailableVolume = std::numeric_limits<long long>::max();
    EXPECT_EQ(onlyIncident(all()), "1 SH600002: the position is larger than an order can be");
}

TEST_F(BasketLeftOut, AuditGetsItsReportOutsideTheLockOfTheData) {
    hold("600001", 700);
    suspend("SH600001");
    int locks = -1;
    host.audit.onRecord = [&] { locks = host.tasks.liveLocks; };
    EXPECT_TRUE(check(all()));
    EXPECT_EQ(locks, 0);
}

/// The message about the whole order is enough.
TEST_F(BasketLeftOut, RefusedOrderBringsNoReport) {
    EXPECT_FALSE(check(basket(25, {{"600009", 100}, {"600001", 100}}), strategy(EPriceType::Buy2)));
    EXPECT_EQ(host.errorTexts().size(), 1u);
    EXPECT_EQ(incidents(), std::vector<std::string>());
}

} // namespace
