#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/ManualSingleton.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QObject>
#include <QVector>

namespace TC {

/// Lives on the client's main thread. It brings checked orders back to this thread, because only there the
/// user can be asked.
class ORDERSERVICE_EXPORT COrderServiceAdapter : public QObject,
                                                 public utils::CManualSingletonT<COrderServiceAdapter> {
    Q_OBJECT
public:
    /// Connects to the COrderService singleton. If the singleton does not exist yet, the adapter is never
    /// connected.
    explicit COrderServiceAdapter(QObject* parent = nullptr);

public slots:
    void slotPlaceLegalOrders(QVector<TC::orderParamForOrderService> orders,
                              const QMap<int, TC::COrderStrategyParam>* strategies);
};

} // namespace TC
