#pragma once

#include "orderservice/gates/StrategySource.h"
#include "orderservice/records/StrategyParam.h"
#include "orderservice/variants/BatchVariant.h"
#include "tests/support/Builders.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

/// Gives the strategies of the test and remembers for which channels it was asked.
class CAskedSource final : public TC::IStrategySource {
public:
    explicit CAskedSource(TC::COrderStrategyMap& strategies) : m_strategies(strategies) {}
    TC::COrderStrategyPtr strategyOf(int channel) override {
        asked.push_back(channel);
        if (onAsked) onAsked();
        const auto found = m_strategies.constFind(channel);
        if (found == m_strategies.constEnd()) return nullptr;
        auto strategy = std::make_shared<const TC::COrderStrategyParam>(*found);
        last = strategy;
        return strategy;
    }

    std::function<void()> onAsked;
    std::vector<int> asked;
    std::weak_ptr<const TC::COrderStrategyParam> last;

private:
    TC::COrderStrategyMap& m_strategies;
};

/// Lets a number of orders begin.
class CCountingOwner final : public TC::IBatchOwner {
public:
    bool mayBegin() override { return allowed-- > 0; }

    int allowed = 1000;
};

/// Strategies of these sources on the channels 1, 2 and so on.
inline TC::COrderStrategyMap strategiesOfTypes(std::initializer_list<TC::EOrderStrategyType> types) {
    TC::COrderStrategyMap strategies;
    for (const TC::EOrderStrategyType type : types) {
        const int channel = strategies.size() + 1;
        strategies.insert(channel, CStrategyBuilder().channel(channel).source(type));
    }
    return strategies;
}
