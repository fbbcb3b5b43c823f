#pragma once

#include "check/OrderServiceBase.h"

#include <functional>

namespace TC {

/// The one-pass variant: takes a batch order by order through frame check, family check and command. Nothing
/// is shown before a command goes out; whether the host must ask the user travels in the command.
class COrderServiceUnion : public COrderServiceBase {
    Q_OBJECT
public:
    /// Called before each order of a batch with its channel, so that the owner of the strategies can bring
    /// the map that the batch is worked on up to date: a strategy that is stopped takes no further order.
    /// False cuts the batch before this order: its owner drops the rest, and tells of it.
    using CBeforeOrder = std::function<bool(int channel)>;

    explicit COrderServiceUnion(CBeforeOrder beforeOrder = {}, QObject* parent = nullptr);

    void filterStrategies(COrderStrategyMap* strategies) override;
    /// A missing strategy or an order that fails the frame check ends the batch; what fails its family check
    /// drops alone.
    void placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) override;

private:
    /// What becomes of a batch behind an order of it.
    enum class EBatch {
        GoesOn,
        Ended, ///< by the rules: the order has no strategy or fails the frame check
        Cut,   ///< by the owner, before the order
    };
    EBatch placeGuarded(const COrderParam& order, const COrderStrategyMap* strategies);
    EBatch placeOrder(const COrderParam& order, const COrderStrategyMap* strategies);
    void announce(const COrderParam& order, const COrderStrategyParam& strategy) const;
    void dispatch(const COrderParam& order, const COrderStrategyParam& strategy);

    struct CFamilyOperation;
    struct CChecked;
    void orderFamily(const CFamilyOperation& family, const COrderParam& order,
                     const COrderStrategyParam& strategy) const;
    void orderCompose(COrderParam order, const COrderStrategyParam& strategy) const;
    void issueCommand(const CFamilyOperation& family, const CChecked& checked) const;
    void issueBareCommand(const CFamilyOperation& family, const CChecked& checked) const;

    static const CFamilyOperation s_operations[];

    const CBeforeOrder m_beforeOrder;
};

} // namespace TC
