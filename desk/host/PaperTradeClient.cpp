#include "desk/host/PaperTradeClient.h"

#include "desk/host/DeskIntakeAudit.h"
#include "desk/host/PaperAccounts.h"
#include "desk/journal/JournalEvents.h"
#include "desk/paper/OrderRules.h"
#include "orderservice/kit/MoneySplit.h"

#include <nlohmann/json.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace desk {
namespace {

constexpr int kUnknownAccount = -1;
constexpr int kRatioCountWrong = 4;

utils::KNError ratioCountError() {
    return {kRatioCountWrong, "the number of weights differs from the number of accounts"};
}

/// The order service refuses a closing order of futures or futures options if the first account gets no
/// volume.
kit::EFirstAccount firstAccountOf(EInstrumentKind kind) {
    const bool isFuture = kind == EInstrumentKind::Future || kind == EInstrumentKind::FutureOption;
    return isFuture ? kit::EFirstAccount::MustClose : kit::EFirstAccount::MayBeLeftOut;
}

/// The original line, without the line end of a CRLF file.
std::string lineOf(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words)
        line += (line.empty() ? "" : " ") + word;
    line.erase(std::remove(line.begin(), line.end(), '\r'), line.end());
    return line;
}

std::string wordAt(const std::vector<std::string>& words, std::size_t place) {
    return place < words.size() ? words[place] : std::string();
}

} // namespace

CPaperTradeClient::CPaperTradeClient(CJournal& journal, CPaperBroker& broker, const IQuoteSource& quotes,
                                     CTextSink& sink, const std::vector<CAccountEntry>& accounts)
    : m_journal(journal), m_broker(broker), m_quotes(quotes), m_sink(sink) {
    for (const CAccountEntry& account : accounts)
        m_loginStatus[account.key] = account.loginStatus;
}

TC::EBROKER_LOGIN_STATUS CPaperTradeClient::getLoginStatus(const std::string& accountKey) {
    const auto found = m_loginStatus.find(accountKey);
    return static_cast<TC::EBROKER_LOGIN_STATUS>(found != m_loginStatus.end() ? found->second
                                                                              : kUnknownAccount);
}

std::vector<int> CPaperTradeClient::splitEntrusts(int volume, double, TC::EPriceType,
                                                  const std::vector<TC::CAccountInfoPtr>& accounts,
                                                  const std::vector<double>& ratios, TC::EPositionType,
                                                  const std::string& market, const std::string& code,
                                                  TC::EOperationType operation, TC::EHedge_Flag_Type,
                                                  const boost::shared_ptr<utils::KNError>& error) {
    kit::CSplitResult result;
    if (ratios.size() == accounts.size())
        result = split(volume, accounts, ratios, market + code, operation);
    else
        result.m_error = ratioCountError();
    if (error && !result.m_error.isSuccess()) *error = result.m_error;
    return result.m_volumes;
}

kit::CSplitResult CPaperTradeClient::split(int volume, const std::vector<TC::CAccountInfoPtr>& accounts,
                                           const std::vector<double>& ratios, const std::string& stockKey,
                                           TC::EOperationType operation) const {
    const std::optional<CInstrumentEntry> instrument = m_quotes.instrument(stockKey);
    if (!instrument) return kit::splitOverAccounts(volume, ratios, 1);
    const int unit = tradingUnit(*instrument);
    std::vector<std::string> keys;
    for (const TC::CAccountInfoPtr& account : accounts)
        keys.push_back(account ? account->getKey() : std::string());
    const std::vector<std::int64_t> closable = m_broker.closableVolumes(keys, *instrument, operation);
    if (closable.empty()) return kit::splitOverAccounts(volume, ratios, unit);
    return kit::splitClosing(volume, ratios, unit, closable, firstAccountOf(instrument->kind));
}

std::vector<double> CPaperTradeClient::splitMoney(double amount,
                                                  const std::vector<TC::CAccountInfoPtr>& accounts,
                                                  const std::vector<double>& ratios, TC::EPositionType,
                                                  TC::EOperationType,
                                                  const boost::shared_ptr<utils::KNError>& error) {
    kit::CMoneySplit result;
    if (ratios.size() == accounts.size())
        result = kit::splitMoneyOverAccounts(amount, ratios);
    else
        result.m_error = ratioCountError();
    if (error && !result.m_error.isSuccess()) *error = result.m_error;
    return result.m_amounts;
}

void CPaperTradeClient::cancelTask(int taskId, int operation, const std::string& text,
                                   const std::string& remark, const std::string& tradingDay,
                                   const CCancelCallback& callback, int) {
    (void)m_journal.append("cancel_task", cancelTaskFields(taskId, operation, text, remark, tradingDay));
    const utils::KNError error = m_broker.cancelTask(taskId, remark);
    if (!error.isSuccess()) noteFailedCancel(m_journal, m_sink, taskId, error.errorMsg());
    if (callback) callback(error);
}

void CPaperTradeClient::cancelOrders(const std::vector<std::string>& words) {
    cancelOne(words, "cancelled by a cancel_order line");
}

void CPaperTradeClient::cancelOrder(const boost::shared_ptr<knservice::COrderDetail>& order) {
    if (!order) return;
    const auto* own = dynamic_cast<const CPaperOrderDetail*>(order.get());
    cancelOne({"cancel_order", own != nullptr ? own->m_strAccount : std::string(), order->m_strOrderSysID},
              "cancelled by a function call");
}

void CPaperTradeClient::reportCheckFailed(const std::string& tradeKey, const utils::KNError& error) {
    const auto command = boost::make_shared<knservice::COrderCommand>();
    command->m_strTradeKey = tradeKey;
    {
        const std::lock_guard lock(m_refusedMutex);
        m_refused.emplace_back(command, error);
    }
    continueLater();
}

void CPaperTradeClient::continueLater() {
    QMetaObject::invokeMethod(
        this, [this] { emitRefused(); }, Qt::QueuedConnection);
}

void CPaperTradeClient::emitRefused() {
    std::vector<std::pair<knservice::COrderCommandPtr, utils::KNError>> refused;
    {
        const std::lock_guard lock(m_refusedMutex);
        refused.swap(m_refused);
    }
    for (const auto& [command, error] : refused)
        emit sigOrderCheckFailed(command, error);
}

void CPaperTradeClient::cancelOne(const std::vector<std::string>& words, const std::string& reason) {
    (void)m_journal.append("cancel_orders", cancelOrdersFields(words));
    const utils::KNError error = m_broker.cancelOrders(words, reason);
    const auto info = boost::make_shared<CPaperOrderInfo>();
    info->m_strAccount = wordAt(words, 1);
    info->m_strOrderId = wordAt(words, 2);
    const std::string cause = error.isSuccess() ? std::string() : lineOf(words) + ": " + error.errorMsg();
    emit sigCancelOrder(info, error.isSuccess(), cause);
}

bool CCancelChoice::has(const CPaperOrder& order) const {
    return m_bAll || m_orders.count(order.m_nId) > 0 || m_tasks.count(order.m_nTask) > 0 ||
           m_accounts.count(order.m_strAccount) > 0;
}

utils::KNError CPaperTradeClient::cancelChosen(const CCancelChoice& choice, const std::string& reason,
                                               int& cancelled) {
    CJson fields = controlFields("cancel");
    fields["reason"] = reason;
    fields["all"] = choice.m_bAll;
    fields["orders"] = choice.m_orders;
    fields["tasks"] = choice.m_tasks;
    fields["accounts"] = choice.m_accounts;
    (void)m_journal.append("control", fields);
    const utils::KNError error = m_broker.cancelWaiting(
        [&](const CPaperOrder& order) { return choice.has(order); }, reason, cancelled);
    if (error.isSuccess()) return error;
    TC::CIncidentReport report;
    report.m_eIncident = TC::EIncident::CancelNotDone;
    report.m_strCause = QString::fromStdString(error.errorMsg());
    noteIncident(m_journal, m_sink, report);
    return error;
}

} // namespace desk
