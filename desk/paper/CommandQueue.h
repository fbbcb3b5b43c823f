#pragma once

#include "desk/paper/PaperRecords.h"
#include "orderservice/base/KNError.h"
#include "orderservice/records/CommandParam.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

namespace desk {

/// A recorded command on its way to the paper broker.
struct CQueuedCommand {
    TC::COrderComandParamPtr m_command;
    std::int64_t m_nReference = 0; ///< number of the command's record
    int m_nTask = 0;               ///< a number from CPaperBroker::reserveTask
    /// Called with the reason if the store has refused the command. The broker's mutex is held during the
    /// call, so the function must not call the broker.
    std::function<void(const utils::KNError&)> m_onRefused;
    /// Called with the rejected orders of the command, if there are any, when they are stored. The broker's
    /// mutex is held here too. May be empty.
    std::function<void(const std::vector<CPaperOrder>&)> m_onRejected;
};

/// The commands that wait for the paper broker, in their order, and the signals between the threads that
/// queue them and the worker that carries them out. Thread-safe.
class CCommandQueue {
public:
    /// Number of orders that may wait. A larger number would not make the store faster, but the orders that
    /// wait have no entry in the books yet.
    static constexpr std::size_t kMostOrders = 512;

    /// While a worker serves the queue and too many orders wait, waits for room. Call it before push. Another
    /// thread may take the room first; then the queue becomes longer than it should be, but nothing is lost.
    void waitForRoom();

    /// Adds a command. Returns whether a worker serves the queue. If not, the caller must carry out the
    /// command.
    [[nodiscard]] bool push(CQueuedCommand command);

    /// Takes all commands that wait. Does not wait for any.
    std::vector<CQueuedCommand> takeAll();

    /// A worker starts or stops serving the queue.
    void setServed(bool isServed);

    /// For the worker: waits for a command. Returns false if the worker must end.
    bool waitForCommand();

private:
    std::mutex m_mutex;
    std::condition_variable m_hasCommand; ///< a command waits, or the worker must end
    std::condition_variable m_hasRoom;    ///< there is room, or no worker serves the queue any more
    std::vector<CQueuedCommand> m_commands;
    std::size_t m_nOrders = 0; ///< number of orders in m_commands
    bool m_bServed = false;
};

} // namespace desk
