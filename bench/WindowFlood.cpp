// window_flood: the longest time in milliseconds that the thread of the window is blocked while 1,000 orders
// a second arrive for 10 seconds. Before, the table of orders has 10,000 rows. Each order gives two events
// (it waits, it is filled), a fill, a message and a line of the journal. Twice a second there are new books
// of 50 accounts, 1,000 positions and 5,000 instruments whose quotes all changed. The baseline is a bare
// QTableView that gets and changes the same number of rows 20 times a second.
//
// Measured is the longest round of the event loop: a key or a click waits at most that long. A timer of
// 0 ms prevents that the loop sleeps. The window is drawn without a screen. The desk itself does not run, so
// the figure has neither its tick nor its registry.
#include "bench/Figure.h"
#include "desk/config/DeskConfig.h"
#include "desk/window/MainWindow.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFont>
#include <QPalette>
#include <QSettings>
#include <QStandardItemModel>
#include <QStyle>
#include <QStyleFactory>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace {

constexpr int kRowsBefore = 10000;
constexpr int kOrders = 10000; ///< one each millisecond
constexpr int kBatchMs = 50;
constexpr int kBooksMs = 500;
constexpr int kInstruments = 5000;
constexpr int kAccounts = 50;
constexpr int kPositions = 1000;
constexpr int kColumns = 13;

class CIdleControl : public desk::IDeskControl {
public:
    CIdleControl() {
        for (int i = 0; i < kInstruments; ++i) {
            desk::CInstrumentEntry instrument;
            instrument.market = "SH";
            instrument.code = std::to_string(600000 + i);
            instrument.name = "stock " + instrument.code;
            m_config.instruments.push_back(instrument);
        }
    }
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
    desk::CDeskConfig m_config;
};

/// The window changes the style, the colours and the font of the application.
class CAppearance {
public:
    ~CAppearance() {
        QApplication::setStyle(QStyleFactory::create(m_strStyle));
        QApplication::setPalette(m_palette);
        QApplication::setFont(m_font);
    }

private:
    const QString m_strStyle = QApplication::style()->objectName();
    const QPalette m_palette = QApplication::palette();
    const QFont m_font = QApplication::font();
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

std::shared_ptr<const desk::CBooks> makeBooks(const desk::CDeskConfig& config, int round) {
    auto books = std::make_shared<desk::CBooks>();
    const double move = round * 0.01;
    for (int i = 0; i < kAccounts; ++i) {
        desk::CValuedAccount account;
        account.m_funds.m_strAccount = "A" + std::to_string(i);
        account.m_dEquity = 1000000 + move;
        books->m_accounts.push_back(account);
    }
    for (int i = 0; i < kPositions; ++i) {
        desk::CValuedPosition position;
        position.m_position.m_strAccount = "A" + std::to_string(i % kAccounts);
        position.m_position.m_strStock = config.instruments[static_cast<std::size_t>(i)].key();
        position.m_position.m_nVolume = 100;
        position.m_dProfit = move;
        books->m_positions.push_back(position);
    }
    for (const desk::CInstrumentEntry& instrument : config.instruments) {
        desk::CQuoteEntry& quote = books->m_quotes[instrument.key()];
        quote.last = 10 + move;
        quote.buy[0] = {quote.last - 0.01, 100};
        quote.sell[0] = {quote.last + 0.01, 100};
    }
    return books;
}

/// Runs the event loop until `isEnd`. Returns the time of its longest round, in milliseconds.
double longestBlock(const std::atomic<bool>& isEnd) {
    double longest = 0;
    QElapsedTimer watch;
    QTimer zero;
    QEventLoop loop;
    watch.start();
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop, [&] {
        longest = std::max(longest, static_cast<double>(watch.nsecsElapsed()) / 1e6);
        watch.restart();
    });
    QObject::connect(&zero, &QTimer::timeout, &loop, [&] {
        if (isEnd) loop.quit();
    });
    zero.start(0);
    loop.exec();
    return longest;
}

/// Calls the step for each order of the flood, in its time.
void flood(const std::function<void(int)>& step) {
    auto next = std::chrono::steady_clock::now();
    for (int order = 1; order <= kOrders; ++order) {
        step(order);
        std::this_thread::sleep_until(next += std::chrono::milliseconds(1));
    }
}

void windowFlood(benchmark::State& state) {
    for (auto _ : state) {
        const CAppearance appearance;
        const QTemporaryDir folder;
        QSettings settings(folder.filePath(QStringLiteral("layout.ini")), QSettings::IniFormat);
        CIdleControl control;
        desk::CWindowFeed feed;
        desk::CMainWindow window(QStringLiteral("bench"), control, feed, settings);
        window.show();
        for (int id = 1; id <= kRowsBefore; ++id)
            addOrder(feed, id);
        feed.setBooks(makeBooks(control.config(), 0));
        while (window.model("orders").rowCount() < kRowsBefore)
            window.takeFeed();
        QCoreApplication::processEvents();
        window.begin();
        QCoreApplication::processEvents();
        std::atomic<bool> isEnd{false};
        std::thread writer([&] {
            flood([&](int order) {
                addOrder(feed, kRowsBefore + order);
                if (order % kBooksMs == 0) feed.setBooks(makeBooks(control.config(), order));
            });
            isEnd = true;
        });
        bench::report(state, longestBlock(isEnd), "ms");
        writer.join();
        if (window.model("orders").rowCount() < kRowsBefore + kOrders / 2)
            state.SkipWithError("the window has lost orders");
    }
}

QList<QStandardItem*> bareRow(int id) {
    QList<QStandardItem*> row;
    for (int column = 0; column < kColumns; ++column)
        row.append(new QStandardItem(QString::number(id * column)));
    return row;
}

void windowFloodBaseline(benchmark::State& state) {
    for (auto _ : state) {
        QStandardItemModel model(0, kColumns);
        QTableView view;
        view.setModel(&model);
        view.resize(1000, 400);
        for (int id = 1; id <= kRowsBefore; ++id)
            model.appendRow(bareRow(id));
        view.show();
        QCoreApplication::processEvents();
        std::atomic<int> arrived{0};
        std::atomic<bool> isEnd{false};
        QTimer batch;
        int shown = 0;
        QObject::connect(&batch, &QTimer::timeout, &view, [&] {
            for (const int last = arrived; shown < last; ++shown) {
                model.appendRow(bareRow(kRowsBefore + shown));
                model.item(model.rowCount() - 1, kColumns - 1)->setText(QStringLiteral("filled"));
            }
        });
        batch.start(kBatchMs);
        std::thread writer([&] {
            flood([&](int order) { arrived = order; });
            isEnd = true;
        });
        bench::report(state, longestBlock(isEnd), "ms");
        writer.join();
    }
}

} // namespace

BENCHMARK(windowFlood)->Name("window_flood")->Iterations(1)->Repetitions(3);
BENCHMARK(windowFloodBaseline)->Name("window_flood/baseline")->Iterations(1)->Repetitions(3);
