#pragma once

#include "desk/host/Desk.h"
#include "desk/window/DeskControl.h"
#include "desk/window/DeskWorker.h"
#include "desk/window/Feed.h"
#include "orderservice/gates/IntakePause.h"
#include "orderservice/platform/MsgService.h"

#include <atomic>
#include <memory>

namespace desk {

/// Passes messages on to the desk and to the feed. Any thread. Both must outlive it.
class CWindowMsgService : public TC::CMsgService {
public:
    CWindowMsgService(TC::CMsgService& desk, CWindowFeed& feed) : m_desk(desk), m_feed(feed) {}

    void showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool flag1, bool flag2,
                 const QString& extra) override;
    /// The last message that was shown on this thread since clearLast.
    static const QString& last();
    static void clearLast();

private:
    TC::CMsgService& m_desk;
    CWindowFeed& m_feed;
};

/// The control of a desk that runs in this process. COrderService must exist while an operation on strategies
/// is called. Main thread. Desk and feed must outlive it.
class CLiveControl : public IDeskControl {
public:
    CLiveControl(CDesk& desk, CWindowFeed& feed);
    /// Waits for the cancels that were begun.
    ~CLiveControl() override;

    /// Fills the feed with what the broker has now. Before trading starts.
    void feedStart();

    const CDeskConfig& config() const override { return m_desk.config(); }
    CDeskStatus status() const override;
    std::uint64_t strategyRevision() const override;
    TC::COrderStrategyMap strategies() const override;
    QString startStrategy(int id) override;
    QString stopStrategy(int id) override;
    QString removeStrategy(int id) override;
    QString changeStrategy(const TC::COrderStrategyParam& strategy) override;
    QString addStrategy(const TC::COrderStrategyParam& strategy) override;
    void cancelOrders(std::vector<std::pair<std::string, int>> orders) override;
    void cancelTasks(std::vector<int> tasks) override;
    void halt() override;
    void resume() override;
    void endConfirmationPause() override;

private:
    void cancelAllWaiting();

    CDesk& m_desk;
    CWindowFeed& m_feed;
    std::unique_ptr<TC::CIntakePause> m_pause; ///< while the desk is halted
    std::atomic<bool> m_bHalting{false};
    std::unique_ptr<CDeskWorker> m_worker; ///< last member: its actions use the others
};

} // namespace desk
