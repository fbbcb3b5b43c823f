#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/ManualSingleton.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QMetaObject>
#include <QObject>
#include <QVector>

namespace TC {

class CLegalBatches;

/// Lives on the client's main thread. It brings checked orders back to this thread, because only there the
/// user can be asked. The host stores the adapter with initInstance, and deletes it with release after
/// COrderService::shutdown, both on the main thread.
class ORDERSERVICE_EXPORT COrderServiceAdapter : public QObject,
                                                 public utils::CManualSingletonT<COrderServiceAdapter> {
    Q_OBJECT
public:
    /// Connects to the COrderService singleton. If the singleton does not exist yet, the adapter is never
    /// connected.
    explicit COrderServiceAdapter(QObject* parent = nullptr);
    /// Checked orders that still wait for the adapter are reported as dropped, to the user and to the audit.
    ~COrderServiceAdapter() override;

public slots:
    /// Places checked orders, on the main thread. Orders that arrive from the variant are placed by that
    /// variant, once, even if several signals bring them. A host may change the list before. A host can also
    /// call the slot with a map of its own, which must live during the call; then the current variant places
    /// the orders; the one-pass variant ignores them. Orders that cannot be placed are reported as dropped.
    /// No exception leaves the slot. The variant may show a dialog in the call; until it is closed,
    /// COrderService::shutdown and release are refused.
    void slotPlaceLegalOrders(QVector<TC::orderParamForOrderService> orders,
                              const QMap<int, TC::COrderStrategyParam>* strategies);

private:
    friend class CLegalBatches;
    QMetaObject::Connection m_connection; ///< to the service; ends when the service is deleted
};

} // namespace TC
