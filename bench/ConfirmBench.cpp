// confirm_open: milliseconds from the question to the painted dialog, for 500 orders of different
// instruments. It is the best of ten openings, from the call of the confirmer: the first one of a process is
// slower, and what a host does before it asks is not in the figure. The host of this file has no account data
// and no products, which a real host reads for each account. The baseline shows a dialog with a bare
// QTableView that has the same cells. confirm_refresh: milliseconds for one tick of the timer after the
// quotes of all 500 rows have changed, with the painting that follows. The baseline sets one column of the
// bare view.
#include "bench/Figure.h"
#include "examples/minimal_host/MinimalHost.h"

#include "orderservice/platform/Host.h"
#include "orderservice/ui/BatchTraderType.h"
#include "orderservice/ui/OrderParamTable.h"
#include "orderservice/ui/OrdersConfirmWidget.h"
#include "orderservice/ui/OrdersConfirmer.h"
#include "orderservice/ui/OrdersMessageBox.h"

#include <QApplication>
#include <QDialog>
#include <QStandardItemModel>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace TC;

constexpr int kOrders = 500;
constexpr int kColumns = 12;
constexpr int kMarketValue = 7;
constexpr int kRounds = 10;

struct CPrice : minimal::CQuote {
    explicit CPrice(double price) { m_dLastPrice = price; }
};

struct CConfirmExchange : minimal::CExchange {
    CInstrumentDetailPtr getCodeInfo(const QString&) override { return detail; }
    const CInstrumentDetailPtr detail = boost::make_shared<CInstrumentDetail>();
};

struct CConfirmQuotes : minimal::CQuotes {
    CPriceDataPtr getStockPrice(const QString&) override { return known; }
    boost::shared_ptr<CQuoteRequest> subscribe(const QString& key, const CQuoteRequest::CCallback& callback,
                                               ESubscribeType) override {
        callbacks[key] = callback;
        return boost::make_shared<CQuoteRequest>();
    }
    const CPriceDataPtr known = boost::make_shared<CPrice>(minimal::kPrice);
    std::map<QString, CQuoteRequest::CCallback> callbacks;
};

/// A host with any number of instruments and quotes that change.
struct CConfirmHost {
    CConfirmHost() {
        CHost host = minimalHost.services();
        host.exchangeClient = &exchange;
        host.quoteClient = &quotes;
        if (!installHost(host).isSuccess()) std::abort();
    }
    ~CConfirmHost() { releaseHost(); }

    std::ostringstream screen;
    minimal::CMinimalHost minimalHost{screen};
    CConfirmExchange exchange;
    CConfirmQuotes quotes;
};

std::map<int, CCodeOrderParam> makeOrders() {
    std::map<int, CCodeOrderParam> orders;
    const auto account = boost::make_shared<CAccountInfo>();
    account->m_strKey = "A1";
    for (int i = 0; i < kOrders; ++i) {
        CCodeOrderParam& record = orders[i];
        record.m_account = account;
        record.m_eOperationType = EOperationType::Buy;
        record.m_ePriceType = EPriceType::Specified;
        record.m_dPrice = 9.5;
        record.m_nVolume = 100 * (i + 1);
        record.m_stock.m_strMarket = "SH";
        record.m_stock.m_strCode = std::to_string(600000 + i);
        record.m_stock.m_strName = "stock " + record.m_stock.m_strCode;
    }
    return orders;
}

double milliseconds(const std::function<void()>& step) {
    const auto begin = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

/// Calls `done` after the first table of a dialog was painted.
class CPaintWatch : public QObject {
public:
    explicit CPaintWatch(std::function<void()> done) : m_done(std::move(done)) {
        QApplication::instance()->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isTable = event->type() == QEvent::Paint && watched->parent() != nullptr &&
                             watched->parent()->inherits("QTableView");
        if (isTable && m_done) QTimer::singleShot(0, std::exchange(m_done, nullptr));
        return false;
    }

private:
    std::function<void()> m_done;
};

void confirmOpen(benchmark::State& state) {
    CConfirmHost host;
    COrdersConfirmer confirmer;
    CConfirmQuestion question;
    question.m_rows = makeOrders();
    for (auto _ : state) {
        double best = HUGE_VAL;
        for (int round = 0; round < kRounds; ++round) {
            const auto begin = std::chrono::steady_clock::now();
            const CPaintWatch watch([&] {
                const auto end = std::chrono::steady_clock::now();
                best = std::min(best, std::chrono::duration<double, std::milli>(end - begin).count());
                auto* box = qobject_cast<COrdersMessageBox*>(QApplication::activeModalWidget());
                box->handleEvent(COrdersMessageBox::ButtonEvent, COrdersMessageBox::OkButton);
            });
            if (confirmer.confirm(question).m_eResult != EConfirmResult::Accepted)
                state.SkipWithError("not confirmed");
        }
        bench::report(state, best, "ms");
    }
}

/// A bare table with the cells of the confirmation.
struct CBareTable {
    explicit CBareTable(const COrderParamTable& table) : model(kOrders, kColumns) {
        for (int row = 0; row < kOrders; ++row) {
            for (int column = 0; column < kColumns; ++column)
                model.setItem(row, column, new QStandardItem(table.itemText(row, column)));
        }
        view.setModel(&model);
    }
    QStandardItemModel model;
    QTableView view;
};

/// The confirmation table with 500 orders.
struct CFullTable {
    CFullTable() : widget(0, nullptr) {
        setBatchTraderType(EQdTraderType::Stock);
        widget.prepare();
        std::vector<CCodeOrderParam> orders;
        for (const auto& [key, record] : makeOrders())
            orders.push_back(record);
        widget.setOrders(orders);
        widget.resize(1000, 700);
    }
    COrdersConfirmWidget widget;
};

void confirmOpenBaseline(benchmark::State& state) {
    CConfirmHost host;
    const CFullTable table;
    for (auto _ : state) {
        double best = HUGE_VAL;
        for (int round = 0; round < kRounds; ++round) {
            const auto begin = std::chrono::steady_clock::now();
            CBareTable bare(*table.widget.table());
            QDialog dialog;
            auto* layout = new QVBoxLayout(&dialog);
            layout->addWidget(&bare.view);
            dialog.resize(1000, 700);
            const CPaintWatch watch([&] {
                const auto end = std::chrono::steady_clock::now();
                best = std::min(best, std::chrono::duration<double, std::milli>(end - begin).count());
                dialog.accept();
            });
            dialog.exec();
            layout->removeWidget(&bare.view);
            bare.view.setParent(nullptr);
        }
        bench::report(state, best, "ms");
    }
}

void confirmRefresh(benchmark::State& state) {
    CConfirmHost host;
    CFullTable table;
    table.widget.show();
    QApplication::processEvents();
    double price = 10;
    for (auto _ : state) {
        double best = HUGE_VAL;
        for (int round = 0; round < kRounds; ++round) {
            price += 0.01;
            const auto quote = boost::make_shared<CPrice>(price);
            for (const auto& [key, callback] : host.quotes.callbacks)
                callback(quote);
            const QString before = table.widget.table()->statText(kMarketValue);
            best = std::min(best, milliseconds([&] {
                                table.widget.slotTimeout();
                                QApplication::processEvents();
                            }));
            if (table.widget.table()->statText(kMarketValue) == before)
                state.SkipWithError("nothing changed");
        }
        bench::report(state, best, "ms");
    }
}

void confirmRefreshBaseline(benchmark::State& state) {
    CConfirmHost host;
    const CFullTable table;
    CBareTable bare(*table.widget.table());
    bare.view.resize(1000, 700);
    bare.view.show();
    QApplication::processEvents();
    double price = 10;
    for (auto _ : state) {
        double best = HUGE_VAL;
        for (int round = 0; round < kRounds; ++round) {
            price += 0.01;
            best = std::min(best, milliseconds([&] {
                                for (int row = 0; row < kOrders; ++row)
                                    bare.model.item(row, kMarketValue)
                                        ->setText(QString::number(price * 100 * (row + 1), 'f', 2));
                                QApplication::processEvents();
                            }));
        }
        bench::report(state, best, "ms");
    }
}

} // namespace

BENCHMARK(confirmOpen)->Name("confirm_open")->Iterations(1)->Repetitions(5);
BENCHMARK(confirmOpenBaseline)->Name("confirm_open/baseline")->Iterations(1)->Repetitions(5);
BENCHMARK(confirmRefresh)->Name("confirm_refresh")->Iterations(1)->Repetitions(5);
BENCHMARK(confirmRefreshBaseline)->Name("confirm_refresh/baseline")->Iterations(1)->Repetitions(5);
