#include "desk/door/CallReport.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <set>
#include <utility>

namespace desk {
namespace {

constexpr std::size_t kMostLines = kFirstLines + kLastLines;

constexpr const char* kCancelFunction = "cancel";

/// The keys of a record; an empty object if they cannot be read.
CJson fieldsOf(const CCapturedRecord& record) {
    CJson fields = CJson::parse('{' + record.m_strFields + '}', nullptr, false);
    return fields.is_object() ? fields : CJson::object();
}

std::string textOf(const CJson& fields, const char* key) {
    const auto value = fields.find(key);
    return value != fields.end() && value->is_string() ? value->get<std::string>() : std::string();
}

/// Goes through the records of one call.
class CReporter {
public:
    explicit CReporter(CCallReport& report) : m_report(report) {}

    void take(const CCapturedRecord& record) {
        if (record.m_strKind == "command")
            takeCommand(record);
        else if (record.m_strKind == "message")
            m_report.m_messages.push_back({record.m_strKind, textOf(fieldsOf(record), "text"), {}});
        else if (record.m_strKind == "trade_error")
            takeTradeError(record);
        else if (record.m_strKind == "incident")
            m_report.m_messages.push_back({record.m_strKind, textOf(fieldsOf(record), "cause"), {}});
    }
    void take(const CCancelAnswer& cancel) {
        if (cancel.m_bDone) ++m_report.m_nCancels;
        if (!cancel.m_bDone) m_report.m_messages.push_back({kCancelFunction, cancel.m_strText, {}});
        m_bRefused = m_bRefused || !cancel.m_bDone;
    }
    bool isRefused() const { return m_bRefused; }

private:
    void takeCommand(const CCapturedRecord& record) {
        if (record.m_nSeq != 0) m_commands.insert(record.m_nSeq);
        if (record.m_nSeq != 0 && record.m_task) m_report.m_tasks.push_back(*record.m_task);
    }
    /// The broker carries out the commands of other callers, too, on any thread that calls it.
    void takeTradeError(const CCapturedRecord& record) {
        const CJson fields = fieldsOf(record);
        const auto command = fields.find("command");
        if (command != fields.end() && m_commands.count(command->get<std::int64_t>()) == 0) return;
        m_bRefused = true;
        m_report.m_messages.push_back({record.m_strKind, textOf(fields, "text"), textOf(fields, "title")});
    }
    CCallReport& m_report;
    std::set<std::int64_t> m_commands; ///< journal numbers of the call's commands
    bool m_bRefused = false;
};

/// Sets the result of a call that has sent nothing, and that no exception has ended.
void nameNothing(const std::string& function, bool isRefused, CCallReport& report) {
    if (isRefused || !report.m_failures.empty()) {
        report.m_pszResult = kCallRefused;
    } else if (function == kCancelFunction) {
        report.m_strCause = "no order was found that could be cancelled";
    } else if (report.m_messages.empty()) {
        report.m_pszResult = kCallUnknown;
        report.m_strCause = "there is no function \"" + function +
                            "\"; the functions are passorder, smartalgopypassorder and cancel";
    } else {
        report.m_strCause = "no command was made, and no failure was reported; check whether the kind of the "
                            "user may send commands";
    }
}

/// Among hundreds of messages nobody finds the last one, which has decided the call.
void nameLastOfMany(CCallReport& report) {
    if (std::max(report.m_messages.size(), report.m_failures.size()) <= kMostLines) return;
    report.m_strCause =
        report.m_messages.empty() ? report.m_failures.back().m_strText : report.m_messages.back().m_strText;
}

template<typename Range, typename Write>
void addLines(CJson& answer, const char* key, const char* moreKey, const Range& lines, Write write) {
    CJson& list = answer[key] = CJson::array();
    const std::size_t leftOut = lines.size() > kMostLines ? lines.size() - kMostLines : 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i < kFirstLines || i >= kFirstLines + leftOut) list.push_back(write(lines[i]));
    }
    if (leftOut > 0) answer[moreKey] = leftOut;
}

CJson failureJson(const CCallFailure& failure) {
    return CJson{{"id", failure.m_nId}, {"key", failure.m_strKey}, {"text", failure.m_strText}};
}

} // namespace

CCallReport reportCall(const std::string& function, CCallTrace trace) {
    CCallReport report;
    report.m_failures = std::move(trace.m_failures);
    CReporter reporter(report);
    for (const CCapturedRecord& record : trace.m_records)
        reporter.take(record);
    for (const CCancelAnswer& cancel : trace.m_cancels)
        reporter.take(cancel);
    if (!report.m_tasks.empty() || report.m_nCancels > 0)
        report.m_pszResult = kCallSent;
    else if (!trace.m_strException.empty())
        report.m_pszResult = kCallFailed;
    else
        nameNothing(function, reporter.isRefused(), report);
    if (report.m_pszResult == kCallRefused) nameLastOfMany(report);
    if (!trace.m_strException.empty()) report.m_strCause = "the call was ended by: " + trace.m_strException;
    return report;
}

CJson callEndFields(const CCallReport& report, std::int64_t asked) {
    CJson fields{{"event", report.m_pszResult}, {"call", nullptr}, {"tasks", report.m_tasks}};
    if (asked != 0) fields["call"] = asked;
    if (report.m_nCancels > 0) fields["cancels"] = report.m_nCancels;
    if (!report.m_strCause.empty()) fields["cause"] = report.m_strCause;
    if (!report.m_failures.empty())
        addLines(fields, "failures", "more_failures", report.m_failures, failureJson);
    return fields;
}

CJson callAnswer(const CCallReport& report, std::int64_t asked, const std::vector<std::string>& orders) {
    CJson answer{{"result", report.m_pszResult}, {"call", nullptr}};
    if (asked != 0) answer["call"] = asked;
    if (!report.m_strCause.empty()) answer["cause"] = report.m_strCause;
    answer["tasks"] = report.m_tasks;
    answer["cancels"] = report.m_nCancels;
    addLines(answer, "messages", "more_messages", report.m_messages, [](const CCallMessage& message) {
        CJson row{{"kind", message.m_strKind}, {"text", message.m_strText}};
        if (!message.m_strTitle.empty()) row["title"] = message.m_strTitle;
        return row;
    });
    addLines(answer, "failures", "more_failures", report.m_failures, failureJson);
    addLines(answer, "orders", "more_orders", orders, [](const std::string& line) { return line; });
    return answer;
}

} // namespace desk
