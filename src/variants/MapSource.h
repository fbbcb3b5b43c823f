#pragma once

#include "orderservice/gates/StrategySource.h"

namespace TC {

/// The strategies of a map, without copies. The map must not change, and must outlive the source and the
/// pointers that it returned.
class CMapSource final : public IStrategySource {
public:
    explicit CMapSource(const COrderStrategyMap& strategies) : m_strategies(strategies) {}

    COrderStrategyPtr strategyOf(int channel) override {
        const auto found = m_strategies.constFind(channel);
        if (found == m_strategies.constEnd()) return nullptr;
        return COrderStrategyPtr(COrderStrategyPtr(), &found.value()); // the map owns the strategy
    }

private:
    const COrderStrategyMap& m_strategies;
};

} // namespace TC
