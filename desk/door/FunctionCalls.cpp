#include "desk/door/FunctionCalls.h"

#include "desk/door/ControlDoor.h"
#include "orderservice/func/OrderFuncService.h"
#include "orderservice/platform/TradeClient.h"

#include <nlohmann/json.hpp>

#include <exception>
#include <utility>

namespace desk {
namespace {

constexpr const char* kCancel = "cancel";

/// What the call that this thread performs has left; null if it performs none.
thread_local CCallTrace* s_pTrace = nullptr;

/// A failure on another thread belongs to a command that was refused after its call had ended. The paper
/// broker has recorded that already.
void takeFailure(int id, const std::string& key, const utils::KNError& error) {
    if (s_pTrace != nullptr) s_pTrace->m_failures.push_back({id, key, error.errorMsg()});
}

/// The desk's trade client answers a cancel before it returns. Cancels of order files are not of a call.
void takeCancel(bool isDone, const std::string& text) {
    if (s_pTrace != nullptr) s_pTrace->m_cancels.push_back({isDone, text});
}

class CTraceScope {
public:
    explicit CTraceScope(CCallTrace& trace) { s_pTrace = &trace; }
    ~CTraceScope() { s_pTrace = nullptr; }
    CTraceScope(const CTraceScope&) = delete;
    CTraceScope& operator=(const CTraceScope&) = delete;
};

/// Calls the function. Returns the exception that has ended the call, as a text; empty if there was none.
std::string callFunction(const CCallRequest& request) {
    try {
        TC::COrderFuncService::instance()->doParserOrder(request.m_strFunction, request.m_strParam,
                                                         request.m_algo.value_or(std::string()));
        return {};
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "an unknown exception";
    }
}

CCallReport callAndReport(const CCallRequest& request) {
    CCallTrace trace;
    {
        const CRecordCapture capture;
        const CTraceScope scope(trace);
        trace.m_strException = callFunction(request);
        trace.m_records = capture.records();
    }
    return reportCall(request.m_strFunction, std::move(trace));
}

class CCountScope {
public:
    explicit CCountScope(std::atomic<int>& count) : m_count(count) { ++m_count; }
    ~CCountScope() { --m_count; }
    CCountScope(const CCountScope&) = delete;
    CCountScope& operator=(const CCountScope&) = delete;

private:
    std::atomic<int>& m_count;
};

CJson callBeginFields(const CCallRequest& request) {
    CJson fields{{"event", "asked"}, {"function", request.m_strFunction}, {"param", request.m_strParam}};
    if (request.m_algo) fields["algo"] = *request.m_algo;
    return fields;
}

} // namespace

CFunctionCalls::CFunctionCalls(CJournal& journal, COrderTexts orderTexts)
    : m_journal(journal), m_orderTexts(std::move(orderTexts)) {}

void CFunctionCalls::begin() {
    TC::COrderFuncService::initInstance(new TC::COrderFuncService);
    TC::COrderFuncService& service = *TC::COrderFuncService::instance();
    service.registOrderFailedCallback(takeFailure);
    service.init();
    QObject::connect(
        &TC::CTradeClient::instance(), &TC::CTradeClient::sigCancelOrder, &service,
        [](const knservice::COrderInfoPtr&, bool isDone, const std::string& text) {
            takeCancel(isDone, text);
        },
        Qt::DirectConnection);
}

void CFunctionCalls::end() {
    TC::COrderFuncService::release();
}

std::string CFunctionCalls::answer(const std::string& line) {
    CCallRequest request;
    const utils::KNError read = readCallRequest(line, request);
    if (!read.isSuccess()) return refusalAnswer(kCallBadRequest, read.errorMsg());
    if (m_bEnding) return endingAnswer();
    const CCountScope running(m_nRunning);
    return perform(request);
}

std::string CFunctionCalls::perform(const CCallRequest& request) {
    std::int64_t asked = 0;
    const utils::KNError recorded = m_journal.append("call", callBeginFields(request), &asked);
    if (!recorded.isSuccess() && request.m_strFunction != kCancel)
        return refusalAnswer(kCallRefused, "the call cannot be recorded: " + recorded.errorMsg());
    const CCallReport report = callAndReport(request);
    (void)m_journal.append("call", callEndFields(report, asked));
    return callAnswer(report, asked, orderTexts(report))
        .dump(-1, ' ', false, CJson::error_handler_t::replace);
}

std::vector<std::string> CFunctionCalls::orderTexts(const CCallReport& report) const {
    if (!m_orderTexts || report.m_tasks.empty()) return {};
    try {
        return m_orderTexts(report.m_tasks);
    } catch (const std::exception& error) {
        return {"the orders cannot be read: " + std::string(error.what())};
    }
}

} // namespace desk
