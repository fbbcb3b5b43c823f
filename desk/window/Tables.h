#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/window/Column.h"
#include "desk/window/Feed.h"

#include <map>
#include <string>
#include <vector>

/// The tables of the window: their columns, and how a record becomes a row. Main thread; the texts are in the
/// language of the application.
namespace desk {

using CNames = std::map<std::string, std::string>; ///< names of instruments by key

const CTableSpec& strategyTable();
const CTableSpec& orderTable();
const CTableSpec& taskTable();
const CTableSpec& fillTable();
const CTableSpec& accountTable();
const CTableSpec& positionTable();
const CTableSpec& quoteTable();
const CTableSpec& bookTable();
const CTableSpec& messageTable();
const CTableSpec& journalTable();

/// The numbers of a task's orders.
struct CTaskState {
    CPaperTask m_task;
    int m_nOrders = 0;
    int m_nWaiting = 0;
    int m_nFilled = 0;
    int m_nCancelled = 0;
    int m_nRejected = 0;
};

CRow strategyRow(const TC::COrderStrategyParam& strategy);
CRow orderRow(const CPaperOrder& order, const CNames& names);
CRow taskRow(const CTaskState& state);
CRow fillRow(const CBrokerEvent& event, const CNames& names);
/// `sinceStart`: the change of the equity since the desk was started.
CRow accountRow(const CValuedAccount& account, double sinceStart);
/// Of all accounts, also of those that a filter hides.
CRow totalRow(const std::vector<CValuedAccount>& accounts, double sinceStart);
CRow positionRow(const CValuedPosition& position);
/// `quote` may be null. `time`: when the quote changed last in this run; empty if it did not.
CRow quoteRow(const CInstrumentEntry& instrument, const CQuoteEntry* quote, const QString& time = {});
/// Twenty rows: the asks from the tenth to the best, then the bids from the best to the tenth. `quote` may be
/// null.
std::vector<CRow> bookRows(const CQuoteEntry* quote);
CRow messageRow(const CFeedMessage& message);
CRow journalRow(const std::string& line);

/// The operation as a word.
QString sideText(TC::EOperationType operation);
QString stateText(EOrderStatus status);

} // namespace desk
