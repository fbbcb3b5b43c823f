#include "desk/window/MainWindow.h"
#include "desk/window/PlotData.h"

#include "tests/desk/window/FakeControl.h"
#include "tests/support/FakeClock.h"
#include "tests/support/TempFolder.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QSettings>
#include <QTabBar>

#include <gtest/gtest.h>

#include <memory>

namespace {

using namespace desk;

constexpr double kMinute = CPlotData::kMinuteMs;

TEST(PlotData, AnAccountHasOnePointASecondAtMost) {
    CPlotData data;
    data.addEquity("A", 0, 1);
    data.addEquity("A", 500, 2);
    data.addEquity("A", 1000, 3);
    data.addEquity("B", 1200, 4);
    EXPECT_EQ(data.equity("A"), (QVector<QPointF>{{0, 1}, {1000, 3}}));
    EXPECT_EQ(data.equity("B"), (QVector<QPointF>{{1200, 4}}));
    EXPECT_TRUE(data.equity("C").isEmpty());
}

TEST(PlotData, ALongLineHasFewerPointsOverTheWholeTime) {
    CPlotData data;
    constexpr int kSeconds = 20'000;
    for (int second = 0; second < kSeconds; ++second)
        data.addEquity("A", second * 1000.0, second);
    const QVector<QPointF> points = data.equity("A");
    EXPECT_LE(points.size(), CPlotData::kMaxPoints);
    EXPECT_GE(points.size(), CPlotData::kMaxPoints / 4);
    EXPECT_EQ(points.first().x(), 0);
    EXPECT_GT(points.last().x(), (kSeconds - 200) * 1000.0);
    for (int i = 1; i < points.size(); ++i)
        EXPECT_GT(points[i].x(), points[i - 1].x());
}

TEST(PlotData, OrdersAreCountedByMinuteAlsoMinutesWithoutOrders) {
    CPlotData data;
    EXPECT_TRUE(data.ordersAMinute(kMinute).isEmpty());
    data.addOrders(kMinute + 1, 2);
    data.addOrders(kMinute + 2, 3);
    data.addOrders(3 * kMinute, 1);
    data.addOrders(3 * kMinute, 0);
    EXPECT_EQ(data.ordersAMinute(4 * kMinute + 5),
              (QVector<QPointF>{{kMinute, 5}, {2 * kMinute, 0}, {3 * kMinute, 1}, {4 * kMinute, 0}}));
    EXPECT_EQ(data.ordersAMinute(500 * kMinute).size(), CPlotData::kMinutes);
}

TEST(PlotData, TheNewestCommandTimesAreKept) {
    CPlotData data;
    for (int i = 0; i <= CPlotData::kMaxPoints; ++i)
        data.addCommandTime(i, 1);
    EXPECT_LE(data.commandTimes().size(), CPlotData::kMaxPoints);
    EXPECT_EQ(data.commandTimes().last().x(), CPlotData::kMaxPoints);
}

class Plots : public testing::Test {
protected:
    Plots() {
        window.show();
        window.panel("plots").raise();
        QCoreApplication::processEvents();
    }
    void addBooks(double equity) {
        auto books = std::make_shared<CBooks>();
        for (const char* account : {"A1", "A2"}) {
            CValuedAccount valued;
            valued.m_funds.m_strAccount = account;
            valued.m_dEquity = equity;
            books->m_accounts.push_back(valued);
        }
        feed.setBooks(books);
        window.takeFeed();
    }

    CFakeClock clock;
    CTempFolder folder;
    QSettings settings{QString::fromStdString(folder.path("layout.ini")), QSettings::IniFormat};
    CFakeControl control;
    CWindowFeed feed;
    CMainWindow window{QStringLiteral("desk"), control, feed, settings};
    CPlotPanel& plots = *window.findChild<CPlotPanel*>();
};

TEST_F(Plots, APlotAppearsWithItsFirstData) {
    EXPECT_TRUE(window.tabifiedDockWidgets(&window.panel("messages")).contains(&window.panel("plots")));
    plots.draw();
    EXPECT_TRUE(plots.equityPlotWidget().isHidden());
    EXPECT_TRUE(plots.orderPlotWidget().isHidden());
    EXPECT_TRUE(plots.commandPlotWidget().isHidden());
    addBooks(1000);
    CBrokerEvent event;
    event.m_order.m_nId = 1;
    feed.addEvent(event);
    window.takeFeed();
    plots.draw();
    EXPECT_FALSE(plots.equityPlotWidget().isHidden());
    EXPECT_FALSE(plots.orderPlotWidget().isHidden());
    EXPECT_TRUE(plots.commandPlotWidget().isHidden()); // nothing was measured
    EXPECT_EQ(plots.data().ordersAMinute(clock.currentDateTime().toMSecsSinceEpoch()).last().y(), 1);
    plots.data().addCommandTime(0, 3.1);
    plots.draw();
    EXPECT_FALSE(plots.commandPlotWidget().isHidden());
}

TEST_F(Plots, TheTimeOfEachSeenCommandIsPlottedOnce) {
    control.m_status.m_strLastCommand = "10:31:07.214";
    control.m_status.m_lastMs = 3.1;
    window.takeFeed();
    window.takeFeed();
    ASSERT_EQ(plots.data().commandTimes().size(), 1);
    EXPECT_EQ(plots.data().commandTimes()[0].y(), 3.1);
    control.m_status.m_strLastCommand = "10:31:08.000";
    control.m_status.m_lastMs.reset(); // a person was asked
    window.takeFeed();
    control.m_status.m_strLastCommand = "10:31:09.000";
    control.m_status.m_lastMs = 4;
    window.takeFeed();
    EXPECT_EQ(plots.data().commandTimes().size(), 2);
}

TEST_F(Plots, TheEquityOfTheSelectedAccountsIsPlottedOrTheTotal) {
    addBooks(1000);
    clock.sleep(2);
    addBooks(1100);
    EXPECT_EQ(plots.plottedAccounts(), QStringList{"All"});
    EXPECT_EQ(plots.data().equity("\ntotal").size(), 2);
    EXPECT_EQ(plots.data().equity("\ntotal").last().y(), 2200);
    window.table("accounts").selectRow(2);
    EXPECT_EQ(plots.plottedAccounts(), QStringList{"A2"});
    window.table("accounts").selectAll();
    EXPECT_EQ(plots.plottedAccounts().size(), 3);
    window.table("accounts").clearSelection();
    EXPECT_EQ(plots.plottedAccounts(), QStringList{"All"});
}

} // namespace
