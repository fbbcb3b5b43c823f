#pragma once

#include "base/StopRequest.h"
#include "gates/OrderGate.h"
#include "gates/StrategyRegistry.h"
#include "intake/HostLinePort.h"
#include "records/StrategyParam.h"

#include <cstdio>
#include <memory>
#include <set>
#include <string>

namespace TC {

struct CFileCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using CFileStream = std::unique_ptr<std::FILE, CFileCloser>;

/// Polls the files of the running file strategies, takes each away from its writer by renaming it, reads it
/// to the end and hands its orders to the gate as one batch. Nothing stays open between passes.
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
    bool readOrderFile(int channel, const COrderStrategyParam& strategy, std::string& tmpPath,
                       CFileStream& stream);
    void tellLeftWaiting(int channel, const COrderStrategyParam& strategy, const char* cause);

    IOrderGate& m_gate;
    IStrategyRegistry& m_registry;
    CHostLinePort m_port;
    std::set<std::string> m_leftWaiting; ///< .tmp paths of files that could not be taken, already told
    utils::CStopRequest m_stop;
};

} // namespace TC
