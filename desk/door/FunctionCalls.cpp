#include "desk/door/FunctionCalls.h"

#include "desk/door/ControlDoor.h"
#include "orderservice/func/OrderFuncService.h"

#include <nlohmann/json.hpp>

#include <exception>
#include <utility>

namespace desk {
namespace {

constexpr const char* kCancel = "cancel";

/// Where the failure call-back puts the failures of the call that this thread performs.
thread_local std::vector<CCallFailure>* s_pFailures = nullptr;

/// A failure on another thread belongs to a command that was refused after its call had ended. The paper
/// broker has recorded that already.
void takeFailure(int id, const std::string& key, const utils::KNError& error) {
    if (s_pFailures != nullptr) s_pFailures->push_back({id, key, error.errorMsg()});
}

class CFailureScope {
public:
    CFailureScope() { s_pFailures = &m_failures; }
    ~CFailureScope() { s_pFailures = nullptr; }
    CFailureScope(const CFailureScope&) = delete;
    CFailureScope& operator=(const CFailureScope&) = delete;

    std::vector<CCallFailure> take() { return std::move(m_failures); }

private:
    std::vector<CCallFailure> m_failures;
};

/// Calls the function. Returns the exception that has ended the call, as a text; empty if there was none.
std::string callFunction(const CCallRequest& request) {
    try {
        TC::COrderFuncService::instance()->doParserOrder(request.m_strFunction, request.m_strParam,
                                                         request.m_strAlgo);
        return {};
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "an unknown exception";
    }
}

CCallReport callAndReport(const CCallRequest& request) {
    const CRecordCapture capture;
    CFailureScope failures;
    const std::string exception = callFunction(request);
    return reportCall(request.m_strFunction, capture.records(), failures.take(), exception);
}

CJson callBeginFields(const CCallRequest& request) {
    CJson fields{{"event", "asked"}, {"function", request.m_strFunction}, {"param", request.m_strParam}};
    if (!request.m_strAlgo.empty()) fields["algo"] = request.m_strAlgo;
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
}

void CFunctionCalls::end() {
    TC::COrderFuncService::release();
}

std::string CFunctionCalls::answer(const std::string& line) {
    CCallRequest request;
    const utils::KNError read = readCallRequest(line, request);
    if (!read.isSuccess()) return refusalAnswer(kCallBadRequest, read.errorMsg());
    if (m_bEnding) return endingAnswer();
    return perform(request);
}

std::string CFunctionCalls::perform(const CCallRequest& request) {
    std::int64_t asked = 0;
    const utils::KNError recorded = m_journal.append("call", callBeginFields(request), &asked);
    if (!recorded.isSuccess() && request.m_strFunction != kCancel)
        return refusalAnswer(kCallRefused, "the call cannot be recorded: " + recorded.errorMsg());
    const CCallReport report = callAndReport(request);
    (void)m_journal.append("call", callEndFields(report, asked));
    const std::vector<std::string> orders =
        m_orderTexts && !report.m_tasks.empty() ? m_orderTexts(report.m_tasks) : std::vector<std::string>();
    return callAnswer(report, asked, orders).dump(-1, ' ', false, CJson::error_handler_t::replace);
}

} // namespace desk
