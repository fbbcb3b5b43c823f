#pragma once

#include "base/StopRequest.h"
#include "gates/OrderGate.h"
#include "gates/StrategyRegistry.h"
#include "intake/HostLinePort.h"
#include "intake/LineSource.h"
#include "records/StrategyParam.h"

#include <QString>
#include <QVector>

#include <memory>
#include <vector>

namespace TC {

/// Polls the sources of the running file strategies and takes each batch of lines away from its writer. Each
/// is read to the end, reported to the audit, handed to the gate as one batch, and then let go, see
/// ILineSource. Order files are such a source, see COrderFileSourceKind.
class CFileService {
public:
    /// Reads order files. Gate and registry outlive the object.
    CFileService(IOrderGate& gate, IStrategyRegistry& registry);
    /// Reads from these kinds of sources; a strategy is for the first that serves it.
    CFileService(IOrderGate& gate, IStrategyRegistry& registry,
                 std::vector<std::unique_ptr<ILineSourceKind>> kinds);

    /// The body of the file thread: a pass every polling interval until stop is called. A pass is skipped
    /// while intake is paused, and what an exception leaves of a pass waits for the next.
    void startFileServer();
    /// Lets startFileServer return: after the pass in hand, or at once if it sleeps. Any thread.
    void stop();

    /// One pass over all strategies, with the registry locked for the whole of it. While intake is paused it
    /// sleeps instead, at most until stop is called.
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
    QString m_strLastFailure; ///< of the last pass, as reported; empty after a good one
    bool m_bIntervalFailed = false;
    utils::CStopRequest m_stop;
};

} // namespace TC
