#include "desk/window/Tables.h"

#include "desk/config/Words.h"
#include "orderservice/base/Unset.h"
#include "orderservice/kit/Operations.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <set>

namespace desk {
namespace {

constexpr int kMaxMessages = 10000;
constexpr int kMaxTrades = 200000; ///< orders, tasks and fills

constexpr const char* kVolumeUnit = QT_TRANSLATE_NOOP("columns", "In shares; derivatives in contracts");
constexpr const char* kPriceUnit = QT_TRANSLATE_NOOP("columns", "In ¥; index futures in points");

QString word(const char* text) {
    return QCoreApplication::translate("words", text);
}

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QVariant money(CMoney amount) {
    return fromMoney(amount);
}

QString nameOf(const CNames& names, const std::string& stock) {
    const auto name = names.find(stock);
    return name == names.end() ? QString() : text(name->second);
}

/// The average price of the fills, or nothing.
QVariant filledPrice(const CPaperOrder& order) {
    if (order.m_nFilled == 0 || order.m_nFilledAmount == 0) return {};
    return fromMoney(order.m_nFilledAmount) / order.m_nFilled / std::max(order.m_nMultiplier, 1);
}

QVariant priceOf(const CPaperOrder& order) {
    if (order.m_bMarket || order.m_nPrice == 0) return {};
    return money(order.m_nPrice);
}

ERowMark markOf(EOrderStatus status) {
    if (status == EOrderStatus::Rejected) return ERowMark::Warning;
    const bool isOpen = status == EOrderStatus::Working || status == EOrderStatus::PartFilled;
    return isOpen ? ERowMark::Waiting : status == EOrderStatus::Cancelled ? ERowMark::Off : ERowMark::None;
}

QVariant priceCell(double price) {
    return TC::isInvalidPrice(price) ? QVariant() : QVariant(price);
}

/// The change against the previous close in percent, or nothing.
QVariant changeOf(const CQuoteEntry& quote) {
    if (TC::isInvalidPrice(quote.last) || TC::isInvalidPrice(quote.previousClose) || quote.previousClose == 0)
        return {};
    return (quote.last / quote.previousClose - 1) * 100;
}

CRow levelRow(const char* side, int level, const CQuoteLevel* entry) {
    const bool isEmpty = entry == nullptr || TC::isInvalidPrice(entry->price);
    return {QString::fromLatin1(side) + QString::number(level),
            {word(side) + QString::number(level), isEmpty ? QVariant() : QVariant(entry->price),
             isEmpty ? QVariant() : QVariant(static_cast<qlonglong>(entry->volume))},
            ERowMark::None};
}

QString kindText(CFeedMessage::EKind kind) {
    switch (kind) {
    case CFeedMessage::EKind::Service:
        return word("order service");
    case CFeedMessage::EKind::Desk:
        return word("desk");
    case CFeedMessage::EKind::Refusal:
        return word("refusal");
    case CFeedMessage::EKind::File:
        return word("order file");
    case CFeedMessage::EKind::Incident:
        break;
    }
    return word("incident");
}

/// The channel that a message of the order service names, or nothing.
QVariant channelOf(const QString& message) {
    const QString label = QStringLiteral("通道号");
    int place = message.indexOf(label);
    if (place < 0) return {};
    place += label.size();
    while (place < message.size() && !message[place].isDigit() && !message[place].isLetter())
        ++place;
    int end = place;
    while (end < message.size() && message[end].isDigit())
        ++end;
    return end > place ? QVariant(message.mid(place, end - place).toInt()) : QVariant();
}

/// The number of a key of a journal line, or nothing.
QVariant journalNumber(const std::string& line, const char* key) {
    const std::size_t place = journalValue(line, key);
    if (place == std::string::npos) return {};
    const char* begin = line.c_str() + place;
    char* end = nullptr;
    const long long number = std::strtoll(begin, &end, 10);
    return end == begin ? QVariant() : QVariant(number);
}

/// The channel of a record: its key, or what its message names.
QVariant journalChannel(const std::string& line, const std::string& kind) {
    const QVariant channel = journalNumber(line, "channel");
    const bool isMessage = kind == "message" || kind == "trade_error";
    return channel.isValid() || !isMessage ? channel : channelOf(text(journalText(line, "text")));
}

/// Whether a record tells of something that was not done as the user wanted.
bool isJournalWarning(const std::string& line, const std::string& kind) {
    static const std::set<std::string> kWarnings = {"continued", "discarded", "incident",
                                                    "resumed",   "unplaced",  "trade_error"};
    static const std::vector<const char*> kSigns = {
        R"("rejected":true)",      R"("cut_short":true)", R"("left_over":true)",   R"("left_waiting":true)",
        R"("action":"not_saved")", R"("event":"stuck")",  R"("event":"not_asked")"};
    const auto has = [&](const char* sign) { return line.find(sign) != std::string::npos; };
    if (kWarnings.count(kind) > 0) return true;
    if (kind == "message")
        return journalNumber(line, "level").toInt() == static_cast<int>(TC::MsgLevel::Warning);
    if (kind == "order") return has(R"("status":"rejected")");
    const bool hasSigns = kind == "intake" || kind == "strategy" || kind == "door" || kind == "confirmation";
    return hasSigns && std::any_of(kSigns.begin(), kSigns.end(), has);
}

} // namespace

const CTableSpec& strategyTable() {
    static const CTableSpec kSpec{
        "strategies",
        {{"state", QT_TRANSLATE_NOOP("columns", "State"), ECell::Text, 62, true},
         {"channel", QT_TRANSLATE_NOOP("columns", "Ch."), ECell::Count, 30},
         {"name", QT_TRANSLATE_NOOP("columns", "Name"), ECell::Text, 80},
         {"source", QT_TRANSLATE_NOOP("columns", "Source"), ECell::Text, 50},
         {"family", QT_TRANSLATE_NOOP("columns", "Family"), ECell::Text, 88},
         {"accounts", QT_TRANSLATE_NOOP("columns", "Accounts"), ECell::Text, 60},
         {"path", QT_TRANSLATE_NOOP("columns", "File or address"), ECell::Text, 110}}};
    return kSpec;
}

const CTableSpec& orderTable() {
    static const CTableSpec kSpec{
        "orders",
        {{"time", QT_TRANSLATE_NOOP("columns", "Changed"), ECell::Second, 66},
         {"order", QT_TRANSLATE_NOOP("columns", "Order"), ECell::Count, 45},
         {"task", QT_TRANSLATE_NOOP("columns", "Task"), ECell::Count, 36},
         {"account", QT_TRANSLATE_NOOP("columns", "Account"), ECell::Text, 60},
         {"code", QT_TRANSLATE_NOOP("columns", "Code"), ECell::Text, 102},
         {"name", QT_TRANSLATE_NOOP("columns", "Name"), ECell::Text, 62},
         {"side", QT_TRANSLATE_NOOP("columns", "Side"), ECell::Text, 57},
         {"volume", QT_TRANSLATE_NOOP("columns", "Volume"), ECell::Count, 56, false, false, kVolumeUnit},
         {"filled", QT_TRANSLATE_NOOP("columns", "Filled"), ECell::Count, 46, true, false, kVolumeUnit},
         {"price", QT_TRANSLATE_NOOP("columns", "Price"), ECell::Price, 74, false, false, kPriceUnit},
         {"at", QT_TRANSLATE_NOOP("columns", "Filled at"), ECell::Price, 74, false, false, kPriceUnit},
         {"state", QT_TRANSLATE_NOOP("columns", "State"), ECell::Text, 76, true},
         {"reason", QT_TRANSLATE_NOOP("columns", "Reason"), ECell::Text, 50}},
        true,
        kMaxTrades};
    return kSpec;
}

const CTableSpec& taskTable() {
    static const CTableSpec kSpec{
        "tasks",
        {{"time", QT_TRANSLATE_NOOP("columns", "Time"), ECell::Time, 96},
         {"task", QT_TRANSLATE_NOOP("columns", "Task"), ECell::Count, 46},
         {"orders", QT_TRANSLATE_NOOP("columns", "Orders"), ECell::Count, 54},
         {"waiting", QT_TRANSLATE_NOOP("columns", "Waiting"), ECell::Count, 54, true},
         {"filled", QT_TRANSLATE_NOOP("columns", "All filled"), ECell::Count, 58, true},
         {"cancelled", QT_TRANSLATE_NOOP("columns", "Cancelled"), ECell::Count, 62, true},
         {"rejected", QT_TRANSLATE_NOOP("columns", "Rejected"), ECell::Count, 58, true},
         {"remark", QT_TRANSLATE_NOOP("columns", "Remark"), ECell::Text, 200}},
        true,
        kMaxTrades};
    return kSpec;
}

const CTableSpec& fillTable() {
    static const CTableSpec kSpec{
        "fills",
        {{"time", QT_TRANSLATE_NOOP("columns", "Time"), ECell::Time, 96},
         {"fill", QT_TRANSLATE_NOOP("columns", "Fill"), ECell::Count, 46},
         {"order", QT_TRANSLATE_NOOP("columns", "Order"), ECell::Count, 46},
         {"task", QT_TRANSLATE_NOOP("columns", "Task"), ECell::Count, 42},
         {"account", QT_TRANSLATE_NOOP("columns", "Account"), ECell::Text, 52},
         {"code", QT_TRANSLATE_NOOP("columns", "Code"), ECell::Text, 98},
         {"name", QT_TRANSLATE_NOOP("columns", "Name"), ECell::Text, 66},
         {"side", QT_TRANSLATE_NOOP("columns", "Side"), ECell::Text, 64},
         {"volume", QT_TRANSLATE_NOOP("columns", "Volume"), ECell::Count, 56, false, false, kVolumeUnit},
         {"price", QT_TRANSLATE_NOOP("columns", "Price"), ECell::Price, 72, false, false, kPriceUnit},
         {"amount", QT_TRANSLATE_NOOP("columns", "Amount ¥"), ECell::Money, 100}},
        true,
        kMaxTrades};
    return kSpec;
}

const CTableSpec& accountTable() {
    static const CTableSpec kSpec{
        "accounts",
        {{"account", QT_TRANSLATE_NOOP("columns", "Account"), ECell::Text, 60},
         {"available", QT_TRANSLATE_NOOP("columns", "Available ¥"), ECell::Money, 97, true},
         {"frozen", QT_TRANSLATE_NOOP("columns", "Frozen ¥"), ECell::Money, 95, true},
         {"equity", QT_TRANSLATE_NOOP("columns", "Equity ¥"), ECell::Money, 97, true},
         {"profit", QT_TRANSLATE_NOOP("columns", "Open P&L ¥"), ECell::Money, 86, true, true},
         {"since", QT_TRANSLATE_NOOP("columns", "This run ¥"), ECell::Money, 74, true, true}}};
    return kSpec;
}

const CTableSpec& positionTable() {
    static const CTableSpec kSpec{
        "positions",
        {{"account", QT_TRANSLATE_NOOP("columns", "Account"), ECell::Text, 60},
         {"code", QT_TRANSLATE_NOOP("columns", "Code"), ECell::Text, 123},
         {"name", QT_TRANSLATE_NOOP("columns", "Name"), ECell::Text, 62},
         {"side", QT_TRANSLATE_NOOP("columns", "Side"), ECell::Text, 41},
         {"held", QT_TRANSLATE_NOOP("columns", "Held"), ECell::Count, 60, true, false, kVolumeUnit},
         {"can_sell", QT_TRANSLATE_NOOP("columns", "Can sell"), ECell::Count, 62, true, false, kVolumeUnit},
         {"cost", QT_TRANSLATE_NOOP("columns", "Cost"), ECell::Price, 82, false, false, kPriceUnit},
         {"last", QT_TRANSLATE_NOOP("columns", "Last"), ECell::Price, 76, true, false, kPriceUnit},
         {"value", QT_TRANSLATE_NOOP("columns", "Value ¥"), ECell::Money, 97, true},
         {"profit", QT_TRANSLATE_NOOP("columns", "P&L ¥"), ECell::Money, 88, true, true},
         {"percent", QT_TRANSLATE_NOOP("columns", "P&L %"), ECell::Percent, 60, true, true}}};
    return kSpec;
}

const CTableSpec& quoteTable() {
    static const CTableSpec kSpec{
        "quotes",
        {{"code", QT_TRANSLATE_NOOP("columns", "Code"), ECell::Text, 123},
         {"name", QT_TRANSLATE_NOOP("columns", "Name"), ECell::Text, 62},
         {"last", QT_TRANSLATE_NOOP("columns", "Last"), ECell::Price, 74, true, false, kPriceUnit},
         {"change", QT_TRANSLATE_NOOP("columns", "Chg %"), ECell::Percent, 50, true, true},
         {"bid", QT_TRANSLATE_NOOP("columns", "Bid"), ECell::Price, 74, true, false, kPriceUnit},
         {"ask", QT_TRANSLATE_NOOP("columns", "Ask"), ECell::Price, 74, true, false, kPriceUnit},
         {"time", QT_TRANSLATE_NOOP("columns", "Time"), ECell::Second, 62}}};
    return kSpec;
}

const CTableSpec& bookTable() {
    static const CTableSpec kSpec{
        "book",
        {{"level", QT_TRANSLATE_NOOP("columns", "Level"), ECell::Text, 56},
         {"price", QT_TRANSLATE_NOOP("columns", "Price"), ECell::Price, 80, true, false, kPriceUnit},
         {"volume", QT_TRANSLATE_NOOP("columns", "Volume"), ECell::Count, 80, true, false, kVolumeUnit}}};
    return kSpec;
}

const CTableSpec& messageTable() {
    static const CTableSpec kSpec{"messages",
                                  {{"time", QT_TRANSLATE_NOOP("columns", "Time"), ECell::Time, 96},
                                   {"channel", QT_TRANSLATE_NOOP("columns", "Ch."), ECell::Count, 32},
                                   {"kind", QT_TRANSLATE_NOOP("columns", "Kind"), ECell::Text, 90},
                                   {"level", QT_TRANSLATE_NOOP("columns", "Severity"), ECell::Text, 62},
                                   {"text", QT_TRANSLATE_NOOP("columns", "Text"), ECell::Text, 300}},
                                  true,
                                  kMaxMessages};
    return kSpec;
}

const CTableSpec& journalTable() {
    static const CTableSpec kSpec{"journal",
                                  {{"time", QT_TRANSLATE_NOOP("columns", "Time"), ECell::Time, 96},
                                   {"seq", QT_TRANSLATE_NOOP("columns", "No."), ECell::Count, 56},
                                   {"channel", QT_TRANSLATE_NOOP("columns", "Ch."), ECell::Count, 32},
                                   {"kind", QT_TRANSLATE_NOOP("columns", "Kind"), ECell::Text, 90},
                                   {"level", QT_TRANSLATE_NOOP("columns", "Severity"), ECell::Text, 62},
                                   {"text", QT_TRANSLATE_NOOP("columns", "Record"), ECell::Text, 300}},
                                  true,
                                  kMaxMessages};
    return kSpec;
}

QString sideText(TC::EOperationType operation) {
    const kit::COperation* row = kit::findOperation(operation);
    return row != nullptr ? word(row->m_pszWord) : QString::number(static_cast<int>(operation));
}

QString stateText(EOrderStatus status) {
    switch (status) {
    case EOrderStatus::Working:
        return word("waits");
    case EOrderStatus::PartFilled:
        return word("partly filled");
    case EOrderStatus::Filled:
        return word("filled");
    case EOrderStatus::Cancelled:
        return word("cancelled");
    case EOrderStatus::Rejected:
        break;
    }
    return word("REJECTED");
}

CRow strategyRow(const TC::COrderStrategyParam& strategy) {
    const auto wordOf = [](const auto& words, auto number) {
        return word(wordFor(words, static_cast<int>(number)).c_str());
    };
    return {
        QString::number(strategy.m_nChannel),
        {strategy.isRunning() ? QStringLiteral("▶ ") + word("runs") : QStringLiteral("■ ") + word("stopped"),
         strategy.m_nChannel, strategy.m_strName, wordOf(sourceWords(), strategy.m_eStrategyType),
         wordOf(familyWords(), strategy.m_eTradeType), strategy.m_strSelectedAccount,
         strategy.m_strSignalSource},
        strategy.isRunning() ? ERowMark::None : ERowMark::Off};
}

CRow orderRow(const CPaperOrder& order, const CNames& names) {
    return {QString::number(order.m_nId),
            {text(order.m_strTime), order.m_nId, order.m_nTask, text(order.m_strAccount),
             text(order.m_strStock), nameOf(names, order.m_strStock), sideText(order.m_eOperation),
             order.m_nVolume, order.m_nFilled, priceOf(order), filledPrice(order), stateText(order.m_eStatus),
             text(order.m_strReason)},
            markOf(order.m_eStatus)};
}

CRow taskRow(const CTaskState& state) {
    const ERowMark mark = state.m_nWaiting > 0    ? ERowMark::Waiting
                          : state.m_nRejected > 0 ? ERowMark::Warning
                                                  : ERowMark::None;
    return {QString::number(state.m_task.m_nId),
            {text(state.m_task.m_strTime), state.m_task.m_nId, state.m_nOrders, state.m_nWaiting,
             state.m_nFilled, state.m_nCancelled, state.m_nRejected, text(state.m_task.m_strRemark)},
            mark};
}

CRow fillRow(const CBrokerEvent& event, const CNames& names) {
    const CPaperOrder& order = event.m_order;
    const double price = fromMoney(event.m_fill.m_nPrice);
    return {QString::number(event.m_fill.m_nId),
            {text(event.m_fill.m_strTime), event.m_fill.m_nId, order.m_nId, order.m_nTask,
             text(order.m_strAccount), text(order.m_strStock), nameOf(names, order.m_strStock),
             sideText(order.m_eOperation), event.m_fill.m_nVolume, price,
             price * event.m_fill.m_nVolume * order.m_nMultiplier},
            ERowMark::None};
}

CRow accountRow(const CValuedAccount& account, double sinceStart) {
    const CPaperFunds& funds = account.m_funds;
    return {text(funds.m_strAccount),
            {text(funds.m_strAccount), money(funds.available()), money(funds.m_nFrozen + funds.m_nMargin),
             account.m_dEquity, account.m_dProfit, sinceStart},
            ERowMark::None};
}

CRow totalRow(const std::vector<CValuedAccount>& accounts, double sinceStart) {
    CMoney available = 0;
    CMoney frozen = 0;
    double equity = 0;
    double profit = 0;
    for (const CValuedAccount& account : accounts) {
        available += account.m_funds.available();
        frozen += account.m_funds.m_nFrozen + account.m_funds.m_nMargin;
        equity += account.m_dEquity;
        profit += account.m_dProfit;
    }
    return {QStringLiteral("\ntotal"), // no account has this key
            {word("All"), money(available), money(frozen), equity, profit, sinceStart},
            ERowMark::Total};
}

CRow positionRow(const CValuedPosition& valued) {
    const CPaperPosition& position = valued.m_position;
    const double cost = fromMoney(position.m_nCost);
    const bool isLong = position.m_eSide == EPositionSide::Long;
    return {text(position.m_strAccount) + QLatin1Char('\n') + text(position.m_strStock) +
                (isLong ? QStringLiteral("\nL") : QStringLiteral("\nS")),
            {text(position.m_strAccount), text(position.m_strStock), text(valued.m_strName),
             isLong ? word("long") : word("short"), static_cast<qlonglong>(position.m_nVolume),
             static_cast<qlonglong>(position.available()), valued.m_dCostPrice,
             valued.m_last ? QVariant(*valued.m_last) : QVariant(), valued.m_dValue, valued.m_dProfit,
             cost != 0 ? QVariant(valued.m_dProfit / cost * 100) : QVariant()},
            ERowMark::None};
}

CRow quoteRow(const CInstrumentEntry& instrument, const CQuoteEntry* quote, const QString& time) {
    CRow row{text(instrument.key()),
             {text(instrument.key()), text(instrument.name), {}, {}, {}, {}, {}},
             ERowMark::None};
    if (quote == nullptr) return row;
    row.m_cells[2] = priceCell(quote->last);
    row.m_cells[3] = changeOf(*quote);
    row.m_cells[4] = priceCell(quote->buy[0].price);
    row.m_cells[5] = priceCell(quote->sell[0].price);
    if (!time.isEmpty()) row.m_cells[6] = time;
    return row;
}

std::vector<CRow> bookRows(const CQuoteEntry* quote) {
    std::vector<CRow> rows;
    for (int level = CQuoteEntry::kDepth; level >= 1; --level)
        rows.push_back(
            levelRow("ask ", level, quote ? &quote->sell[static_cast<std::size_t>(level) - 1] : nullptr));
    for (int level = 1; level <= CQuoteEntry::kDepth; ++level)
        rows.push_back(
            levelRow("bid ", level, quote ? &quote->buy[static_cast<std::size_t>(level) - 1] : nullptr));
    return rows;
}

CRow messageRow(const CFeedMessage& message) {
    return {QString::number(message.m_nNumber),
            {message.m_strTime, channelOf(message.m_strText), kindText(message.m_eKind),
             message.m_bWarning ? word("warning") : word("note"), message.m_strText},
            message.m_bWarning ? ERowMark::Warning : ERowMark::None};
}

CRow journalRow(const std::string& line) {
    const long long seq = journalNumber(line, "seq").toLongLong();
    const std::size_t fields = line.find(',', line.find("\"seq\":"));
    const std::string kind = journalText(line, "kind");
    const bool isWarning = isJournalWarning(line, kind);
    return {
        QString::number(seq),
        {text(journalText(line, "time")), seq, journalChannel(line, kind), text(kind),
         isWarning ? word("warning") : word("note"),
         fields == std::string::npos ? QString() : text(line.substr(fields + 1, line.size() - fields - 2))},
        isWarning ? ERowMark::Warning : ERowMark::None};
}

} // namespace desk
