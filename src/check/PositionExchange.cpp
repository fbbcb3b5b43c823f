#include "orderservice/check/PositionExchange.h"

#include "orderservice/check/Positions.h"
#include "orderservice/records/Portfolio.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace TC {
namespace {

COrderSingleParam makeRow(const QString& code, std::int64_t volume, EOperationType operation) {
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    COrderSingleParam row;
    row.m_strCode = code;
    row.m_nVolume = volume >= -kMost && volume <= kMost ? static_cast<int>(volume) : kUnsetInt;
    row.m_eOperationType = static_cast<int>(operation);
    return row;
}

/// Returns the order that changes the held volume to the target. A volume that is not set is treated as its
/// number.
COrderSingleParam rowTo(const COrderSingleParam& target, int multiplier, std::int64_t held) {
    const std::int64_t more = static_cast<std::int64_t>(target.m_nVolume) * multiplier - held;
    const bool isSale = held > 0 && more < 0;
    return makeRow(target.m_strCode, isSale ? -more : more,
                   isSale ? EOperationType::Sell : EOperationType::Buy);
}

/// Targets sorted by code. Each target can be used once.
class CTargets {
public:
    explicit CTargets(QVector<COrderSingleParam> targets) : m_targets(std::move(targets)) {
        std::stable_sort(m_targets.begin(), m_targets.end(), codeSingleParamLessThan);
        m_used.resize(static_cast<std::size_t>(m_targets.size()));
    }
    /// Returns the first unused target of the code and marks it as used; null if there is none.
    const COrderSingleParam* take(const QString& code) {
        COrderSingleParam key;
        key.m_strCode = code;
        const auto range =
            std::equal_range(m_targets.cbegin(), m_targets.cend(), key, codeSingleParamLessThan);
        for (auto it = range.first; it != range.second; ++it) {
            const auto index = static_cast<std::size_t>(it - m_targets.cbegin());
            if (m_used[index]) continue;
            m_used[index] = true;
            return &*it;
        }
        return nullptr;
    }
    template<typename Visit>
    void visitLeft(const Visit& visit) const {
        for (int i = 0; i < m_targets.size(); ++i) {
            if (!m_used[static_cast<std::size_t>(i)]) visit(m_targets[i]);
        }
    }

private:
    QVector<COrderSingleParam> m_targets;
    std::vector<bool> m_used;
};

QVector<CHeldVolume> heldStocks(const CPositions& positions) {
    QVector<CHeldVolume> held;
    for (const auto& position : positions.all()) {
        const bool isStock = position->m_account &&
                             position->m_account->m_nBrokerType == static_cast<int>(EQDBrokerType::Stock);
        if (isStock && position->m_nPositionVolume >= 1)
            held.push_back({QString::fromStdString(position->m_strCode), position->m_nPositionVolume});
    }
    return held;
}

} // namespace

QVector<COrderSingleParam> positionDifferences(const QVector<CHeldVolume>& held,
                                               QVector<COrderSingleParam> targets, int multiplier) {
    CTargets left(std::move(targets));
    QVector<COrderSingleParam> rows;
    for (const CHeldVolume& position : held) {
        const COrderSingleParam* target = left.take(position.m_strCode);
        const COrderSingleParam row =
            target != nullptr ? rowTo(*target, multiplier, position.m_nVolume)
                              : makeRow(position.m_strCode, position.m_nVolume, EOperationType::Sell);
        if (row.m_nVolume != 0) rows.push_back(row);
    }
    left.visitLeft([&](const COrderSingleParam& target) { rows.push_back(rowTo(target, multiplier, 0)); });
    return rows;
}

void exchangePosition(const CAccountInfoPtr& account, QVector<COrderSingleParam>& rows, int multiplier) {
    if (!account) return;
    const CPositions positions(*account);
    if (positions.isKnown()) rows = positionDifferences(heldStocks(positions), rows, multiplier);
}

} // namespace TC
