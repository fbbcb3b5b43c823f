#pragma once

#include "desk/journal/Json.h"
#include "desk/journal/RecordCapture.h"

#include <cstdint>
#include <string>
#include <vector>

/// What came of a call of a function.
namespace desk {

/// Words of the key "result" in an answer of the control door. kCallSent means that something was sent.
/// kCallNotKnown means that it may have been sent: an error has ended the request. All others mean that
/// nothing was sent.
inline constexpr const char* kCallSent = "sent";
inline constexpr const char* kCallNotKnown = "unknown";
inline constexpr const char* kCallRefused = "refused";
inline constexpr const char* kCallNothing = "nothing";
inline constexpr const char* kCallUnknown = "unknown_function";
inline constexpr const char* kCallFailed = "failed";
inline constexpr const char* kCallBadRequest = "bad_request";
inline constexpr const char* kCallEnding = "ending";

/// If a list of an answer is longer than both together, only its first and its last elements are left. What
/// has decided the call comes last.
inline constexpr int kFirstLines = 150;
inline constexpr int kLastLines = 50;

/// A failure as the failure call-back of function trading gets it.
struct CCallFailure {
    int m_nId = -1;
    std::string m_strKey;
    std::string m_strText;
};

/// The answer of the broker to a cancel.
struct CCancelAnswer {
    bool m_bDone = false;
    std::string m_strText; ///< why it was not done
};

/// What a call has left. All texts must be UTF-8.
struct CCallTrace {
    std::vector<CCapturedRecord> m_records; ///< of the call's thread
    std::vector<CCallFailure> m_failures;
    std::vector<CCancelAnswer> m_cancels;
    std::string m_strException; ///< that has ended the call; empty if there was none
};

/// Something that a call has shown to the user.
struct CCallMessage {
    std::string m_strKind; ///< message, trade_error, incident or cancel
    std::string m_strText;
    std::string m_strTitle; ///< only of a trade_error
};

struct CCallReport {
    const char* m_pszResult = kCallNothing;
    std::string m_strCause;   ///< a text for people; empty if the messages are few and say it
    std::vector<int> m_tasks; ///< of the commands that were passed to the broker
    int m_nCancels = 0;       ///< orders that were cancelled
    std::vector<CCallMessage> m_messages;
    std::vector<CCallFailure> m_failures;
};

CCallReport reportCall(const std::string& function, CCallTrace trace);

/// Kind `call` of the journal, at the end of a call. `asked` is the journal number of its beginning; 0 if
/// that was not recorded. A long list of failures is cut; "more_failures" is the number that was left out.
CJson callEndFields(const CCallReport& report, std::int64_t asked);

/// The answer of the control door. `orders` are lines for people about the orders of the tasks. Long lists
/// are cut; "more_messages", "more_failures" and "more_orders" are the numbers that were left out.
CJson callAnswer(const CCallReport& report, std::int64_t asked, const std::vector<std::string>& orders);

} // namespace desk
