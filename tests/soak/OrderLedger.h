#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

/// What became of the orders of a soak, as their senders know it. One thread at a time.
class COrderLedger {
public:
    /// What a sender knows of an order.
    enum class EFate {
        Unanswered, ///< sent whole; its reply is on the way or was lost
        Accepted,   ///< "+OK" came
        Cut         ///< its line never left whole
    };

    /// Volume in shares and price in cents; no two orders have the same.
    using CMark = std::pair<int, int>;
    static CMark markOf(int order) {
        constexpr int kVolumes = 5000;
        return {(order % kVolumes + 1) * 100, 1000 + order / kVolumes};
    }

    void sent(int order) { m_fates[order] = EFate::Unanswered; }
    void accepted(int order) { m_fates[order] = EFate::Accepted; }
    void cut(int order) { m_fates[order] = EFate::Cut; }
    void fail(const std::string& text) { m_failures.push_back(text); }

    const std::map<int, EFate>& fates() const { return m_fates; }
    const std::vector<std::string>& failures() const { return m_failures; }

private:
    std::map<int, EFate> m_fates;
    std::vector<std::string> m_failures;
};
