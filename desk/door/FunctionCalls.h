#pragma once

#include "desk/door/CallReport.h"
#include "desk/door/CallRequest.h"
#include "desk/journal/Journal.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace desk {

/// Performs calls of functions for the desk, and records each of them in the journal: kind `call`, when it
/// begins and when it has ended. The journal must outlive it.
///
/// A placing call that cannot be recorded is refused. A cancel is carried out even then: a full disk must not
/// keep a user from leaving a trade.
class CFunctionCalls {
public:
    /// Lines for people about the orders of these tasks. It is called on the thread of the call.
    /// If it throws, the answer says so and has everything else.
    using COrderTexts = std::function<std::vector<std::string>(const std::vector<int>& tasks)>;

    CFunctionCalls(CJournal& journal, COrderTexts orderTexts);
    /// The order service of functions must have been released.
    ~CFunctionCalls() = default;
    CFunctionCalls(const CFunctionCalls&) = delete;
    CFunctionCalls& operator=(const CFunctionCalls&) = delete;

    /// Makes COrderFuncService and takes its failures. Main thread, after installHost.
    void begin();
    /// From now on calls are refused; one that runs goes on. Any thread.
    void refuseNew() { m_bEnding = true; }
    /// Whether a call runs. Any thread.
    bool isRunning() const { return m_nRunning > 0; }
    /// Releases COrderFuncService. Main thread, when no call runs, before releaseHost. Does nothing if begin
    /// was not called.
    static void end();

    /// Performs one request of the control door on the calling thread, and returns the answer without a
    /// newline. It blocks while the call waits for quotes. Any thread; does not throw for what the request or
    /// the call does.
    std::string answer(const std::string& line);

private:
    std::string perform(const CCallRequest& request);
    std::vector<std::string> orderTexts(const CCallReport& report) const;

    CJournal& m_journal;
    const COrderTexts m_orderTexts;
    std::atomic<bool> m_bEnding{false};
    std::atomic<int> m_nRunning{0};
};

} // namespace desk
