// window_flood: the longest time that the thread of the window is blocked while 1,000 orders a second arrive
// for 10 seconds, with 10,000 rows in the table of orders before. Two events for each order: it waits, and it
// is filled.
//
// A zero timer measures: the longest time between two rounds of the event loop. The window is drawn without a
// screen.
#include "desk/config/DeskConfig.h"
#include "desk/window/MainWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iostream>
#include <thread>
#include <vector>

namespace {

constexpr int kRowsBefore = 10000;
constexpr int kOrdersPerMs = 1;
constexpr int kSeconds = 10;
constexpr double kMostMs = 16;

class CIdleControl : public desk::IDeskControl {
public:
    const desk::CDeskConfig& config() const override { return m_config; }
    desk::CDeskStatus status() const override { return {}; }
    std::uint64_t strategyRevision() const override { return 1; }
    TC::COrderStrategyMap strategies() const override { return {}; }
    QString startStrategy(int) override { return {}; }
    QString stopStrategy(int) override { return {}; }
    QString removeStrategy(int) override { return {}; }
    QString changeStrategy(const TC::COrderStrategyParam&) override { return {}; }
    QString addStrategy(const TC::COrderStrategyParam&) override { return {}; }
    void cancelOrders(std::vector<std::pair<std::string, int>>) override {}
    void cancelTasks(std::vector<int>) override {}
    void cancelAccounts(std::vector<std::string>) override {}
    QStringList waitingFiles() const override { return {}; }
    void discardQueue() override {}
    void halt() override {}
    void resume() override {}
    void endConfirmationPause() override {}

private:
    const desk::CDeskConfig m_config;
};

desk::CBrokerEvent orderEvent(int id, bool isFilled) {
    desk::CBrokerEvent event;
    event.m_order.m_nId = id;
    event.m_order.m_nTask = id / 2;
    event.m_order.m_strAccount = "A1";
    event.m_order.m_strStock = "SH600104";
    event.m_order.m_nVolume = 600;
    event.m_order.m_nPrice = 80000;
    event.m_order.m_strTime = "2026-03-02T10:31:07.214";
    if (!isFilled) return event;
    event.m_order.m_eStatus = desk::EOrderStatus::Filled;
    event.m_order.m_nFilled = 600;
    event.m_order.m_nFilledAmount = 80000 * 600;
    return event;
}

void addOrder(desk::CWindowFeed& feed, int id) {
    feed.addEvent(orderEvent(id, false));
    feed.addJournalLines(R"({"kind":"order","time":"2026-03-02T10:31:07.214","seq":)" + std::to_string(id) +
                         R"(,"event":1,"order":1,"account":"A1","stock":"SH600104","volume":600})"
                         "\n");
    feed.addMessage(desk::CFeedMessage::EKind::Service, false,
                    QStringLiteral("[文件单]　通道号: 1, 股票, 买入"));
    desk::CBrokerEvent fill = orderEvent(id, true);
    fill.m_fill.m_nId = id;
    fill.m_fill.m_nPrice = 80000;
    fill.m_fill.m_nVolume = 600;
    feed.addEvent(fill);
    feed.addEvent(orderEvent(id, true));
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("layout.ini")), QSettings::IniFormat);
    CIdleControl control;
    desk::CWindowFeed feed;
    desk::CMainWindow window(QStringLiteral("bench"), control, feed, settings);
    window.show();
    for (int id = 1; id <= kRowsBefore; ++id)
        addOrder(feed, id);
    while (window.model("orders").rowCount() < kRowsBefore)
        window.takeFeed();
    if (argc > 1) window.table("orders").sortByColumn(std::atoi(argv[1]), Qt::AscendingOrder);
    QCoreApplication::processEvents();
    window.begin();

    std::atomic<bool> isEnd{false};
    std::thread writer([&] {
        auto next = std::chrono::steady_clock::now();
        for (int id = kRowsBefore + 1; id <= kRowsBefore + kSeconds * 1000 * kOrdersPerMs; ++id) {
            addOrder(feed, id);
            std::this_thread::sleep_until(next += std::chrono::milliseconds(1));
        }
        isEnd = true;
    });
    std::vector<double> blocks;
    std::vector<double> busy; // the same in time of the processor: without waiting for other processes
    QElapsedTimer watch;
    QTimer zero;
    double lastMs = 0;
    watch.start();
    QObject::connect(&zero, &QTimer::timeout, &app, [&] {
        blocks.push_back(static_cast<double>(watch.nsecsElapsed()) / 1e6);
        watch.restart();
        timespec now{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        const double ms = static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
        if (lastMs > 0) busy.push_back(ms - lastMs);
        lastMs = ms;
        if (isEnd) app.quit();
    });
    zero.start(0);
    QApplication::exec();
    writer.join();
    window.takeFeed();
    std::sort(blocks.begin(), blocks.end());
    const double longest = blocks.back();
    std::cout << "window_flood: longest " << longest << " ms, 99.9 % " << blocks[blocks.size() * 999 / 1000]
              << " ms, longest of the processor " << *std::max_element(busy.begin(), busy.end())
              << " ms, rows " << window.model("orders").rowCount() << ", limit " << kMostMs << " ms\n";
    return longest <= kMostMs ? 0 : 1;
}
