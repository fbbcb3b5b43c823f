#pragma once

#include "base/ManualSingleton.h"
#include "records/CommandParam.h"
#include "records/StrategyParam.h"

#include <QObject>
#include <QVector>

namespace TC {

/// Lives on the client's main thread and brings checked orders back there, where the user can be asked.
class COrderServiceAdapter : public QObject, public utils::CManualSingletonT<COrderServiceAdapter> {
    Q_OBJECT
public:
    /// Connects to the COrderService singleton where there is one by now; otherwise stays unconnected for
    /// good.
    explicit COrderServiceAdapter(QObject* parent = nullptr);

public slots:
    void slotPlaceLegalOrders(QVector<TC::orderParamForOrderService> orders,
                              const QMap<int, TC::COrderStrategyParam>* strategies);
};

} // namespace TC
