#pragma once

#include "base/StopRequest.h"
#include "gates/OrderGate.h"
#include "gates/StrategyRegistry.h"
#include "intake/HostLinePort.h"
#include "intake/TakenFile.h"
#include "records/StrategyParam.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace TC {

struct CIntakeReport;

/// Why the guard keeps a file.
enum class EKeptFile {
    Refused,  ///< nothing of it was carried out
    CutShort, ///< its writer went on writing: what the guard had looked at was carried out
    LeftOver, ///< an earlier run left it under its .tmp name: its orders may have gone out
};

/// Polls the files of the running file strategies and takes each away from its writer by renaming it. Each is
/// read to the end, reported to the audit, handed to the gate as one batch, and then deleted. So a file is
/// never read twice, and one whose orders have not been handed over still lies under its .tmp name after a
/// crash. Nothing stays open between passes.
///
/// With the switch "mdl_order_file_guard" on, a file that is damaged or not complete is refused whole and
/// kept, see COrderFileScan, and a file that is left under a .tmp name is kept as well instead of being
/// deleted.
class CFileService {
public:
    /// Gate and registry outlive the object.
    CFileService(IOrderGate& gate, IStrategyRegistry& registry);

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
    bool isOrderFileThere(int channel, const COrderStrategyParam& strategy);
    std::unique_ptr<CTakenFile> takeOrderFile(int channel, const COrderStrategyParam& strategy,
                                              bool isGuarded);
    bool clearTmpPath(int channel, const COrderStrategyParam& strategy, bool isGuarded);
    QVector<COrderParam> readOrders(CTakenFile& file, long long bytes, int channel,
                                    const COrderStrategyParam& strategy, CIntakeReport& report);
    void refuse(CTakenFile& file, const QString& cause, CIntakeReport& report);
    void cutAndKeep(CTakenFile& file, CIntakeReport& report);
    void noteKept(const CPutAside& kept, EKeptFile kind, CIntakeReport& report);
    int readInterval();
    void reportOnce(const QString& text);
    void tellLeftWaiting(int channel, const COrderStrategyParam& strategy, const std::string& cause);

    IOrderGate& m_gate;
    IStrategyRegistry& m_registry;
    CHostLinePort m_port;
    std::set<QString> m_leftWaiting; ///< paths of files that cannot be taken, already told
    /// .tmp paths where a file of this run lies that could not be moved away.
    std::map<std::string, EKeptFile> m_unmoved;
    QString m_strLastFailure; ///< of the last pass, as reported; empty after a good one
    bool m_bIntervalFailed = false;
    utils::CStopRequest m_stop;
};

} // namespace TC
