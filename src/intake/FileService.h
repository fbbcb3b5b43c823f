#pragma once

#include "orderservice/base/StopRequest.h"
#include "orderservice/gates/OrderGate.h"
#include "orderservice/gates/StrategyRegistry.h"
#include "orderservice/intake/HostLinePort.h"
#include "orderservice/intake/LineSource.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>
#include <QVector>

#include <memory>
#include <vector>

namespace TC {

/// Polls the sources of the running file strategies and takes each batch of lines away from its writer. Each
/// batch is read to the end, reported to the audit, handed to the gate as one batch, and then destroyed, see
/// ILineSource. Order files are one kind of source, see COrderFileSourceKind.
class CFileService {
public:
    /// Reads order files. Gate and registry must outlive the object.
    CFileService(IOrderGate& gate, IStrategyRegistry& registry);
    /// Reads from these kinds of sources. Each strategy is read by the first kind that serves it.
    CFileService(IOrderGate& gate, IStrategyRegistry& registry,
                 std::vector<std::unique_ptr<ILineSourceKind>> kinds);

    /// The body of the file thread: runs one pass per polling interval until stop is called. A pass is
    /// skipped while intake is paused. If an exception ends a pass, the remaining strategies wait for the
    /// next pass.
    void startFileServer();
    /// Makes startFileServer return: after the current pass, or at once if it sleeps. Any thread.
    void stop();

    /// Runs one pass over all strategies and holds the registry's lock during the whole pass. While intake is
    /// paused it sleeps for a moment instead; stop ends the sleep.
    void tryOrder();

private:
    void orderStrategyParamPair(int channel, const COrderStrategyParam& strategy);
    void placeBatch(ILineSource& source, int channel, const COrderStrategyParam& strategy);
    QVector<COrderParam> readOrders(ILineSource& source, int channel, const COrderStrategyParam& strategy,
                                    CIntakeReport& report);
    int readInterval();
    void reportOnce(const QString& text);

    IOrderGate& m_gate;
    IStrategyRegistry& m_registry;
    const std::vector<std::unique_ptr<ILineSourceKind>> m_kinds;
    CHostLinePort m_port;
    QString m_strLastFailure; ///< failure of the last pass, as reported; empty after a good pass
    bool m_bIntervalFailed = false;
    utils::CStopRequest m_stop;
};

} // namespace TC
