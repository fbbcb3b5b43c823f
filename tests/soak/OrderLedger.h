#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

/// What became of the orders and cancels of a soak, as their senders know it. One thread at a time.
class COrderLedger {
public:
    /// What a sender knows of an order or a cancel.
    enum class EFate {
        Unanswered, ///< sent whole; its reply is on the way or was lost
        Accepted,   ///< "+OK" came
        Cut         ///< its line never left whole
    };

    /// By what a line and the record of it are known as the same: of an order its volume in shares and its
    /// price in cents, of a cancel its task and kCancel. No two orders and no two cancels have the same.
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
