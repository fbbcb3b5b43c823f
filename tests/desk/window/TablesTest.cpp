#include "desk/window/Tables.h"
#include "desk/window/MainWindow.h"
#include "desk/window/RowFilter.h"
#include "desk/window/Theme.h"
#include "desk/window/TradeBoard.h"

#include "tests/desk/window/FakeControl.h"
#include "tests/support/FakeClock.h"
#include "tests/support/TempFolder.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QSettings>

#include <gtest/gtest.h>

namespace {

using namespace desk;

const CTableSpec kCells{"cells",
                        {{"text", "Text"},
                         {"count", "Count", ECell::Count},
                         {"money", "Money", ECell::Money, 80, false, true},
                         {"time", "Time", ECell::Time}}};

CRow cells(const char* text, int count, double money) {
    return {QString::fromLatin1(text), {QString::fromLatin1(text), count, money, QString()}, ERowMark::None};
}

QString shownKeys(const QAbstractItemModel& model) {
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row)
        all.append(model.index(row, 0).data(CRowModel::KeyRole).toString());
    return all.join(QLatin1Char(' '));
}

TEST(Cells, ATimeOfAnotherDayHasItsDay) {
    CFakeClock clock;
    EXPECT_EQ(cellText(ECell::Time, "2026-01-05T10:31:07.214"), "10:31:07.214");
    EXPECT_EQ(cellText(ECell::Time, "2026-01-04T10:31:07.214"), "01-04 10:31");
    EXPECT_EQ(plainCellText(ECell::Time, "2026-03-01T10:31:07.214"), "2026-03-01 10:31:07.214");
    EXPECT_EQ(cellText(ECell::Time, "10:31:07.214"), "10:31:07.214");
    EXPECT_EQ(cellText(ECell::Second, "2026-01-05T10:31:07.214"), "10:31:07");
    EXPECT_EQ(cellText(ECell::Second, "2026-01-04T10:31:07.214"), "01-04 10:31");
    EXPECT_EQ(plainCellText(ECell::Second, "2026-01-05T10:31:07.214"), "2026-01-05 10:31:07.214");
    EXPECT_EQ(cellText(ECell::Time, QVariant()), "");
}

TEST(Cells, RowsOfTwoDaysAreSortedByDay) {
    CPaperOrder today;
    today.m_nId = 1;
    today.m_strTime = "2026-03-02T09:30:00.000";
    CPaperOrder yesterday;
    yesterday.m_nId = 2;
    yesterday.m_strTime = "2026-03-01T14:00:00.000";
    CRowModel model(orderTable());
    model.apply({orderRow(today, {}), orderRow(yesterday, {})});
    CRowFilter filter;
    filter.setSourceModel(&model);
    filter.sort(columnOf(orderTable(), "time"));
    EXPECT_EQ(shownKeys(filter), "2 1");
}

TEST(Cells, AnAmountThatIsShownAsZeroHasNoSign) {
    EXPECT_EQ(cellText(ECell::Money, -0.004), "0.00");
    EXPECT_EQ(plainCellText(ECell::Money, -0.004), "0.00");
    EXPECT_EQ(cellText(ECell::Money, -0.006), "-0.01");
    CRowModel model(kCells);
    model.apply({cells("a", 1, -0.004), cells("b", 1, -0.006), cells("c", 1, 0.006)});
    const auto trend = [&](int row) { return model.index(row, 2).data(CRowModel::TrendRole).toInt(); };
    EXPECT_EQ(trend(0), 0);
    EXPECT_EQ(trend(1), -1);
    EXPECT_EQ(trend(2), 1);
}

TEST(Cells, AFilterOfAWholeNumberFindsOnlyIt) {
    CRowModel model(kCells);
    model.apply({cells("a", 1, 1), cells("b", 10, 1500.5), cells("c", 16, 2)});
    CRowFilter filter;
    filter.setSourceModel(&model);
    filter.setColumnFilter(1, "1");
    EXPECT_EQ(shownKeys(filter), "a");
    filter.clearFilters();
    filter.setColumnFilter(2, ">1,000");
    EXPECT_EQ(shownKeys(filter), "b");
    filter.setColumnFilter(2, "1,500");
    EXPECT_EQ(shownKeys(filter), "b");
    filter.setColumnFilter(2, ">");
    EXPECT_EQ(shownKeys(filter), "a b c"); // the user is still writing
}

TEST(QuoteTimes, AQuoteHasTheTimeOfItsLastChange) {
    CFakeClock clock;
    CQuoteTimes times;
    CQuoteEntry quote;
    quote.last = 10;
    times.take("A", quote);
    times.take("B", quote);
    times.setStarted();
    EXPECT_EQ(times.timeOf("A"), "");
    quote.buy[9].volume = 5;
    times.take("A", quote);
    EXPECT_EQ(times.timeOf("A"), "2026-01-05T09:30:00.000");
    clock.sleep(60);
    times.take("A", quote);
    times.take("C", quote); // its first quote came now
    EXPECT_EQ(times.timeOf("A"), "2026-01-05T09:30:00.000");
    EXPECT_EQ(times.timeOf("B"), "");
    EXPECT_EQ(times.timeOf("C"), "2026-01-05T09:31:00.000");
}

/// The unit of a number is in the title of its column, or in the tool tip of the title.
TEST(Cells, EachAmountAndEachVolumeHasAUnit) {
    for (const CTableSpec* spec :
         {&orderTable(), &fillTable(), &accountTable(), &positionTable(), &quoteTable(), &bookTable()}) {
        const CRowModel model(*spec);
        for (int column = 0; column < model.columnCount(); ++column) {
            const CColumn& known = spec->m_columns[static_cast<std::size_t>(column)];
            const bool isId = known.m_eCell == ECell::Count && (QLatin1String(known.m_pszId) == "order" ||
                                                                QLatin1String(known.m_pszId) == "task" ||
                                                                QLatin1String(known.m_pszId) == "fill");
            if (isTextCell(known.m_eCell) || isId) continue;
            const QString title = model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
            const QString tip = model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString();
            EXPECT_TRUE(title.endsWith("¥") || title.endsWith("%") || !tip.isEmpty()) << title.toStdString();
        }
    }
}

TEST(WindowFeed, NotesAreDroppedBeforeWarningsAndCounted) {
    CWindowFeed feed;
    feed.addMessage(CFeedMessage::EKind::Desk, true, "warning");
    for (std::size_t i = 0; i < CWindowFeed::kMaxWaiting + 2; ++i)
        feed.addMessage(CFeedMessage::EKind::Desk, false, QString::number(i));
    std::string lines;
    for (std::size_t i = 0; i < CWindowFeed::kMaxWaiting + 4; ++i)
        lines += "{}\n";
    feed.addJournalLines(lines);
    const CFeedBatch batch = feed.take();
    EXPECT_EQ(batch.m_nDropped, 7U);
    ASSERT_GE(batch.m_messages.size(), 2U);
    EXPECT_EQ(batch.m_messages[0].m_strText, "warning");
    EXPECT_EQ(batch.m_messages[1].m_strText, "3");
    EXPECT_EQ(feed.take().m_nDropped, 0U);
}

QString journalCell(const char* line, const char* column) {
    return journalRow(line).m_cells.value(columnOf(journalTable(), column)).toString();
}

TEST(JournalRow, HasItsChannelAndSeverity) {
    const char* incident = R"({"kind":"incident","time":"x","seq":7,"event":"orders_dropped","channel":3})";
    EXPECT_EQ(journalCell(incident, "channel"), "3");
    EXPECT_EQ(journalCell(incident, "level"), "warning");
    EXPECT_EQ(journalCell(incident, "text"), R"("event":"orders_dropped","channel":3)");
    const char* message =
        R"({"kind":"message","time":"x","seq":8,"text":"通道号: 12 \"channel\":5","type":1,"level":2})";
    EXPECT_EQ(journalCell(message, "channel"), "12");
    EXPECT_EQ(journalCell(message, "level"), "warning");
    const char* note = R"({"kind":"message","time":"x","seq":9,"text":"a","type":1,"level":1})";
    EXPECT_EQ(journalCell(note, "channel"), "");
    EXPECT_EQ(journalCell(note, "level"), "note");
    EXPECT_EQ(journalCell(R"({"kind":"order","time":"x","seq":1,"status":"rejected"})", "level"), "warning");
    EXPECT_EQ(journalCell(R"({"kind":"order","time":"x","seq":1,"status":"filled"})", "level"), "note");
    EXPECT_EQ(journalCell(R"({"kind":"intake","seq":1,"rejected":true})", "level"), "warning");
    EXPECT_EQ(journalCell(R"({"kind":"intake","seq":1,"rejected":false})", "level"), "note");
    EXPECT_EQ(journalCell("{}", "level"), "note");
}

class Panels : public testing::Test {
protected:
    Panels() {
        CInstrumentEntry future;
        future.market = "CF";
        future.code = "IF2609";
        future.kind = EInstrumentKind::Future;
        control.m_config.instruments = {future};
        window = std::make_unique<CMainWindow>(QStringLiteral("desk"), control, feed, settings);
    }
    void takeAll() {
        for (int half = 0; half < 2; ++half)
            window->takeFeed();
    }
    void choose(const char* code) {
        CBrokerEvent event;
        event.m_order.m_nId = 1;
        event.m_order.m_strStock = code;
        feed.addEvent(event);
        window->takeFeed();
        emit window->table("orders").sigActivated({"1"});
    }

    CTempFolder folder;
    QSettings settings{QString::fromStdString(folder.path("layout.ini")), QSettings::IniFormat};
    CFakeControl control;
    CWindowFeed feed;
    std::unique_ptr<CMainWindow> window;
};

TEST_F(Panels, TheTitleOfMessagesCountsTheWarningsUntilTheyAreSeen) {
    feed.addMessage(CFeedMessage::EKind::Refusal, true, "refused");
    feed.addMessage(CFeedMessage::EKind::Desk, false, "note");
    feed.addMessage(CFeedMessage::EKind::Refusal, true, "refused");
    takeAll();
    window->takeFeed();
    EXPECT_EQ(window->panel("messages").windowTitle(), "Messages (2 WARNINGS)");
    window->action("view_messages").trigger();
    EXPECT_EQ(window->panel("messages").windowTitle(), "Messages");
}

TEST_F(Panels, TheReasonOfARejectionStaysVisibleUntilItIsSeen) {
    auto& bar = *window->findChild<CRejectionBar*>();
    window->begin();
    window->show();
    const auto reject = [&](int id) {
        CBrokerEvent event;
        event.m_order.m_nId = id;
        event.m_order.m_strAccount = "A1";
        event.m_order.m_strStock = "SH600104";
        event.m_order.m_nVolume = 150;
        event.m_order.m_eStatus = EOrderStatus::Rejected;
        event.m_order.m_strReason = "<b>volume</b> " + std::to_string(id);
        feed.addEvent(event);
    };
    EXPECT_TRUE(bar.isHidden());
    reject(1);
    window->takeFeed();
    EXPECT_FALSE(bar.isHidden());
    EXPECT_EQ(bar.text().simplified(), "REJECTED A1 buy SH600104 150: <b>volume</b> 1");
    for (int id = 2; id <= 5; ++id)
        reject(id);
    window->takeFeed();
    EXPECT_TRUE(bar.text().contains("volume</b> 5")) << bar.text().toStdString();
    EXPECT_FALSE(bar.text().contains("volume</b> 2"));
    EXPECT_TRUE(bar.text().endsWith("and 2 more"));
    window->action("dark").trigger();
    EXPECT_EQ(bar.findChild<QLabel*>()->palette().color(QPalette::WindowText), CTheme::current().warning());
    window->action("dark").trigger();
    window->action("view_orders").trigger();
    EXPECT_TRUE(bar.isHidden());
    EXPECT_EQ(window->panel("orders").windowTitle(), "Orders");
}

TEST_F(Panels, TheTablesOnTheRightUseTheRoomOfALargerWindow) {
    window->show();
    QCoreApplication::processEvents();
    const int left = window->panel("strategies").width();
    const int right = window->panel("orders").width();
    window->resize(window->width() + 500, window->height() + 300);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(window->panel("strategies").width(), left);
    EXPECT_EQ(window->panel("orders").width(), right + 500);
    window->resize(window->width() - 500, window->height());
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(window->panel("strategies").width(), left);
}

TEST_F(Panels, LinesThatWereDroppedAreReported) {
    for (std::size_t i = 0; i < CWindowFeed::kMaxWaiting + 3; ++i)
        feed.addMessage(CFeedMessage::EKind::Desk, false, QString::number(i));
    takeAll();
    const CRow* row = window->model("messages").find("-1");
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->m_eMark, ERowMark::Warning);
    EXPECT_EQ(row->m_cells[columnOf(messageTable(), "text")].toString(),
              "3 lines were left out here, because too many came at once. The journal has the records.");
}

TEST_F(Panels, AFileThatWasDeletedUnreadIsANotice) {
    feed.addJournalLines(R"({"kind":"fill","time":"x","seq":1,"source":"b","cause":"c"})"
                         "\n");
    takeAll();
    EXPECT_EQ(window->stateBar().noticeText(), "");
    feed.addJournalLines(R"({"kind":"discarded","time":"x","seq":2,"source":"/a.txt","cause":"deleted"})"
                         "\n");
    takeAll();
    EXPECT_EQ(window->stateBar().noticeText(), "NOT READ: /a.txt (deleted)");
}

TEST_F(Panels, ManyQuotesAreShownInPartsUntilAllAreShown) {
    constexpr int kCount = 1000;
    for (int i = 0; i < kCount; ++i) {
        CInstrumentEntry instrument;
        instrument.market = "SH";
        instrument.code = std::to_string(600000 + i);
        control.m_config.instruments.push_back(instrument);
    }
    auto books = std::make_shared<CBooks>();
    CValuedPosition position;
    for (int i = 0; i < kCount; ++i) {
        position.m_position.m_strStock = std::to_string(i);
        books->m_positions.push_back(position);
    }
    feed.setBooks(books);
    window->takeFeed();
    EXPECT_LT(window->model("positions").rowCount() + window->model("quotes").rowCount(), kCount);
    for (int turn = 0; turn < 10; ++turn)
        window->takeFeed();
    EXPECT_EQ(window->model("positions").rowCount(), kCount);
    EXPECT_EQ(window->model("quotes").rowCount(), kCount + 1);
    auto fewer = std::make_shared<CBooks>();
    fewer->m_positions = {position};
    feed.setBooks(fewer);
    for (int turn = 0; turn < 10; ++turn)
        window->takeFeed();
    EXPECT_EQ(window->model("positions").rowCount(), 1);
}

TEST_F(Panels, TheBookOfADerivativeIsFoundByItsPlainCode) {
    auto books = std::make_shared<CBooks>();
    books->m_quotes["CFIF2609"].buy[0] = {4000, 3};
    feed.setBooks(books);
    choose("IF2609");
    const CRow* best = window->model("book").find("bid 1");
    ASSERT_NE(best, nullptr);
    EXPECT_EQ(best->m_cells[1].toDouble(), 4000);
}

TEST_F(Panels, AnInstrumentWithoutQuotesHasAnEmptyBook) {
    feed.setBooks(std::make_shared<CBooks>());
    choose("SH999999");
    EXPECT_EQ(window->model("book").rowCount(), 0);
    EXPECT_EQ(window->table("book").emptyText(), "SH999999 is not in instruments.csv, so it has no quotes.");
}

} // namespace
