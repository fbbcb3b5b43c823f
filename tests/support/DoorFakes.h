#pragma once

#include "orderservice/gates/OrderGate.h"
#include "orderservice/gates/StrategyRegistry.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A gate that stores what the doors pass to it. The doors call it on their own threads. Read the records
/// only after these calls are known to be over.
class CRecordingGate final : public TC::IOrderGate {
public:
    void placeorder(TC::COrderParam order) override { placeOrders({std::move(order)}); }
    void placeOrders(QVector<TC::COrderParam> orders) override {
        batches.push_back(orders);
        if (onPlace) onPlace();
    }
    void cancelOrder(int taskId) override { cancelledTasks.push_back(taskId); }
    void cancelOrders(std::vector<std::string>& fields) override {
        cancelled.push_back(fields);
        if (onCancel) onCancel();
    }
    QString getOrderStrategyText(TC::EOrderStrategyType) const override { return QStringLiteral("文件单"); }
    std::string defaultRemark(const TC::COrderStrategyParam&) const override { return "default"; }

    std::function<void()> onPlace, onCancel;
    std::vector<QVector<TC::COrderParam>> batches;
    std::vector<int> cancelledTasks;
    std::vector<std::vector<std::string>> cancelled;
};

/// Strategies in a plain map. Not thread-safe.
class CPlainRegistry final : public TC::IStrategyRegistry {
public:
    void visitStrategies(const std::function<void(int, const TC::COrderStrategyParam&)>& visit) override {
        ++visits;
        for (auto it = strategies.cbegin(); it != strategies.cend(); ++it)
            visit(it.key(), it.value());
    }
    TC::COrderStrategyPtr strategyOf(int channel) override {
        const auto found = strategies.constFind(channel);
        return found != strategies.constEnd() ? std::make_shared<const TC::COrderStrategyParam>(*found)
                                              : nullptr;
    }
    /// Not used by the doors.
    std::uint64_t revision() const override { return 0; }

    TC::COrderStrategyMap strategies;
    int visits = 0;
};
