#pragma once

#include "desk/window/DeskControl.h"

#include <string>
#include <utility>
#include <vector>

/// A control whose desk is in this record. It writes down what the window asks for.
class CFakeControl : public desk::IDeskControl {
public:
    const desk::CDeskConfig& config() const override { return m_config; }
    desk::CDeskStatus status() const override { return m_status; }
    std::uint64_t strategyRevision() const override { return m_nRevision; }
    TC::COrderStrategyMap strategies() const override { return m_strategies; }
    QString startStrategy(int id) override { return note("start", id, TC::COrderStrategyParam::kRunning); }
    QString stopStrategy(int id) override { return note("stop", id, TC::COrderStrategyParam::kStopped); }
    QString removeStrategy(int id) override {
        m_calls.append(QStringLiteral("remove %1").arg(id));
        if (m_failure.isEmpty()) m_strategies.remove(id);
        ++m_nRevision;
        return m_failure;
    }
    QString changeStrategy(const TC::COrderStrategyParam& strategy) override {
        m_calls.append(QStringLiteral("change %1").arg(strategy.m_nChannel));
        return m_failure;
    }
    QString addStrategy(const TC::COrderStrategyParam& strategy) override {
        m_calls.append(QStringLiteral("add"));
        m_added = strategy;
        return m_failure;
    }
    void cancelOrders(std::vector<std::pair<std::string, int>> orders) override {
        for (const auto& [account, order] : orders)
            m_calls.append(QStringLiteral("cancel %1 %2").arg(QString::fromStdString(account)).arg(order));
    }
    void cancelTasks(std::vector<int> tasks) override {
        for (const int task : tasks)
            m_calls.append(QStringLiteral("cancel task %1").arg(task));
    }
    void cancelAccounts(std::vector<std::string> accounts) override {
        for (const std::string& account : accounts)
            m_calls.append(QStringLiteral("cancel all of %1").arg(QString::fromStdString(account)));
    }
    QStringList waitingFiles() const override { return {}; }
    void discardQueue() override { m_calls.append(QStringLiteral("discard")); }
    void halt() override { m_calls.append(QStringLiteral("halt")); }
    void resume() override { m_calls.append(QStringLiteral("resume")); }
    void endConfirmationPause() override { m_calls.append(QStringLiteral("end pause")); }

    void add(int id, bool isRunning) {
        TC::COrderStrategyParam strategy;
        strategy.m_nChannel = id;
        strategy.m_nStatus =
            isRunning ? TC::COrderStrategyParam::kRunning : TC::COrderStrategyParam::kStopped;
        m_strategies.insert(id, strategy);
        ++m_nRevision;
    }

    desk::CDeskConfig m_config;
    desk::CDeskStatus m_status;
    TC::COrderStrategyMap m_strategies;
    std::uint64_t m_nRevision = 1;
    QString m_failure; ///< result of the operations on strategies
    QStringList m_calls;
    TC::COrderStrategyParam m_added;

private:
    QString note(const char* call, int id, int status) {
        m_calls.append(QLatin1String(call) + QStringLiteral(" %1").arg(id));
        if (m_failure.isEmpty() && m_strategies.contains(id)) m_strategies[id].m_nStatus = status;
        ++m_nRevision;
        return m_failure;
    }
};
