#pragma once

#include "orderservice/gates/OrderGate.h"
#include "orderservice/intake/LinePort.h"

namespace TC {

/// Serves the line grammar with the installed host and the order service.
class CHostLinePort : public ILinePort {
public:
    explicit CHostLinePort(IOrderGate& gate) : m_gate(gate) {}

    void terminateTask(int taskId) override;
    void cancelOrders(std::vector<std::string>& fields) override;
    bool readTradeParam(const std::string& text, COrderTradeParam& param) override;
    std::string defaultRemark(const COrderStrategyParam& strategy) override;
    bool areRemarksAllowed() override;
    std::optional<CBasketSetting> findBasket(std::string_view name) override;
    bool hasAccounts(const COrderStrategyParam& strategy) override;
    QString sourceLabel(EOrderStrategyType type) override;
    QString sourceTitle(EOrderStrategyType type) override;
    void showNote(const QString& text) override;

private:
    IOrderGate& m_gate;
};

} // namespace TC
