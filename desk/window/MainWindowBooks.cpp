// What the window shows of accounts, positions and quotes.
#include "desk/window/MainWindow.h"
#include "orderservice/base/Clock.h"

#include <QDockWidget>

#include <algorithm>
#include <utility>

namespace desk {
namespace {

constexpr std::size_t kRowsAtOnce = 250; ///< of positions and quotes; bounds the time of one turn

/// The key of the quotes of an instrument. Derivatives are traded under their plain code.
std::string quoteKeyOf(const CDeskConfig& config, const std::string& name) {
    for (const CInstrumentEntry& instrument : config.instruments) {
        const std::vector<std::string> names = instrument.names();
        if (std::find(names.begin(), names.end(), name) != names.end()) return instrument.key();
    }
    return name;
}

} // namespace

void CMainWindow::showBooks(const CBooks& books) {
    std::vector<CRow> accounts;
    double total = 0;
    for (const CValuedAccount& account : books.m_accounts) {
        const double change = account.m_dEquity - account.m_dStart;
        total += change;
        accounts.push_back(accountRow(account, change));
    }
    if (!accounts.empty()) accounts.insert(accounts.begin(), totalRow(books.m_accounts, total));
    model("accounts").apply(accounts);
    plotEquity(accounts);
    showBook();
}

/// Shows the next part of the positions and quotes. All of them at once would block the window.
void CMainWindow::showPartOfBooks() {
    if (!m_part.m_books && std::exchange(m_bNewBooks, false)) m_part.m_books = m_books;
    if (!m_part.m_books) return;
    const CBooks& books = *m_part.m_books;
    const std::vector<CInstrumentEntry>& instruments = m_control.config().instruments;
    std::size_t rest = kRowsAtOnce;
    std::vector<CRow> positions;
    for (; rest > 0 && m_part.m_nPosition < books.m_positions.size(); --rest) {
        positions.push_back(positionRow(books.m_positions[m_part.m_nPosition++]));
        m_part.m_positionKeys.append(positions.back().m_strKey);
    }
    model("positions").apply(positions);
    std::vector<CRow> quotes;
    for (; rest > 0 && m_part.m_nQuote < instruments.size(); --rest)
        quotes.push_back(makeQuoteRow(instruments[m_part.m_nQuote++], books));
    model("quotes").apply(quotes);
    if (m_part.m_nPosition < books.m_positions.size() || m_part.m_nQuote < instruments.size()) return;
    if (model("positions").rowCount() > m_part.m_positionKeys.size())
        model("positions").retain(m_part.m_positionKeys);
    m_quoteTimes.setStarted();
    m_part = {};
}

CRow CMainWindow::makeQuoteRow(const CInstrumentEntry& instrument, const CBooks& books) {
    const std::string key = instrument.key();
    const auto quote = books.m_quotes.find(key);
    if (quote == books.m_quotes.end()) return quoteRow(instrument, nullptr);
    m_quoteTimes.take(key, quote->second);
    return quoteRow(instrument, &quote->second, m_quoteTimes.timeOf(key));
}

void CMainWindow::plotEquity(const std::vector<CRow>& accounts) {
    const auto now = static_cast<double>(utils::currentDateTime().toMSecsSinceEpoch());
    const int equity = columnOf(accountTable(), "equity");
    for (const CRow& row : accounts)
        m_plots->data().addEquity(row.m_strKey, now, row.m_cells[equity].toDouble());
    showPlottedAccounts();
}

/// The equity of the selected accounts is plotted, or that of all together.
void CMainWindow::showPlottedAccounts() {
    QModelIndexList rows = table("accounts").selectionModel()->selectedRows();
    const CRowFilter& all = table("accounts").filter();
    if (rows.isEmpty() && all.rowCount() > 0) rows.append(all.index(0, 0)); // the total
    QMap<QString, QString> accounts;
    for (const QModelIndex& row : rows)
        accounts[row.data(CRowModel::KeyRole).toString()] = row.data(Qt::DisplayRole).toString();
    m_plots->setAccounts(accounts);
}

void CMainWindow::showBook() {
    if (m_strInstrument.empty() || !m_books) return;
    if (m_names.count(m_strInstrument) == 0) return; // its table is empty and says why
    const auto quote = m_books->m_quotes.find(m_strInstrument);
    model("book").apply(bookRows(quote == m_books->m_quotes.end() ? nullptr : &quote->second));
}

void CMainWindow::chooseInstrument(const QStringList& keys) {
    if (keys.value(0).isEmpty()) return;
    m_strInstrument = quoteKeyOf(m_control.config(), keys[0].toStdString());
    if (m_names.count(m_strInstrument) == 0)
        table("book").setEmptyText(tr("%1 is not in instruments.csv, so it has no quotes.").arg(keys[0]));
    model("book").clear(); // other values of another instrument are no changes
    const auto name = m_names.find(m_strInstrument);
    m_panels["book"]->setProperty(
        "title",
        tr("Book: %1 %2")
            .arg(keys.value(0), name == m_names.end() ? QString() : QString::fromStdString(name->second)));
    showBook();
    showCounts();
    m_panels["book"]->show();
    m_panels["book"]->raise();
    // The best prices are in the middle.
    table("book").scrollTo(table("book").filter().index(CQuoteEntry::kDepth, 0),
                           QAbstractItemView::PositionAtCenter);
}

} // namespace desk
