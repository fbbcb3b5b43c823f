#include "desk/paper/CommandQueue.h"

#include <utility>

namespace desk {

void CCommandQueue::waitForRoom() {
    std::unique_lock lock(m_mutex);
    m_hasRoom.wait(lock, [this] { return !m_bServed || m_nOrders < kMostOrders; });
}

bool CCommandQueue::push(CQueuedCommand command) {
    const std::lock_guard lock(m_mutex);
    // A command without orders takes room too.
    m_nOrders += command.m_command->m_codes.size() + 1;
    m_commands.push_back(std::move(command));
    m_hasCommand.notify_one();
    return m_bServed;
}

std::vector<CQueuedCommand> CCommandQueue::takeAll() {
    const std::lock_guard lock(m_mutex);
    m_nOrders = 0;
    m_hasRoom.notify_all();
    return std::exchange(m_commands, {});
}

void CCommandQueue::setServed(bool isServed) {
    const std::lock_guard lock(m_mutex);
    m_bServed = isServed;
    m_hasCommand.notify_all();
    m_hasRoom.notify_all();
}

bool CCommandQueue::waitForCommand() {
    std::unique_lock lock(m_mutex);
    m_hasCommand.wait(lock, [this] { return !m_bServed || !m_commands.empty(); });
    return m_bServed;
}

} // namespace desk
