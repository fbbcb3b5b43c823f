#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

/// The fate of a soak's orders and cancels, as their senders know it. Not thread-safe.
class COrderLedger {
public:
    /// What a sender knows about an order or a cancel.
    enum class EFate {
        Unanswered, ///< sent completely; the reply is not here yet or was lost
        Accepted,   ///< the reply was "+OK"
        Cut         ///< the line was not sent completely
    };

    /// Identifies an order or a cancel in its line and in its journal record. An order: its volume in shares
    /// and its price in cents. A cancel: its task and kCancel. All marks are different.
    using CMark = std::pair<int, int>;
    static constexpr int kCancel = 0;
    static CMark markOfOrder(int order) {
        constexpr int kVolumes = 5000;
        return {(order % kVolumes + 1) * 100, 1000 + order / kVolumes};
    }
    static CMark markOfCancel(int cancel) { return {cancel + 1, kCancel}; }
    static bool isCancel(const CMark& mark) { return mark.second == kCancel; }

    void sent(const CMark& mark) { m_fates[mark] = EFate::Unanswered; }
    void accepted(const CMark& mark) { m_fates[mark] = EFate::Accepted; }
    void cut(const CMark& mark) { m_fates[mark] = EFate::Cut; }
    void fail(const std::string& text) { m_failures.push_back(text); }

    const std::map<CMark, EFate>& fates() const { return m_fates; }
    const std::vector<std::string>& failures() const { return m_failures; }

private:
    std::map<CMark, EFate> m_fates;
    std::vector<std::string> m_failures;
};
