#pragma once

#include "desk/host/Desk.h"
#include "desk/window/DeskControl.h"
#include "desk/window/DeskWorker.h"
#include "desk/window/Feed.h"
#include "desk/window/IntakeMeter.h"
#include "orderservice/base/Unset.h"
#include "orderservice/gates/IntakePause.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/OrderClient.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace desk {

/// Passes messages on to the desk and to the feed, and lets the meter know of them. Any thread. Desk and feed
/// must outlive it.
class CWindowMsgService : public TC::CMsgService {
public:
    CWindowMsgService(TC::CMsgService& desk, CWindowFeed& feed, std::shared_ptr<CIntakeMeter> meter)
        : m_desk(desk), m_feed(feed), m_meter(std::move(meter)) {}

    void showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool flag1, bool flag2,
                 const QString& extra) override;
    /// The last message that was shown on this thread since clearLast.
    static const QString& last();
    static void clearLast();

private:
    TC::CMsgService& m_desk;
    CWindowFeed& m_feed;
    const std::shared_ptr<CIntakeMeter> m_meter;
};

/// Passes commands on to the desk, and measures them. Any thread. The desk must outlive it.
class CWindowOrderClient : public TC::COrderClient {
public:
    CWindowOrderClient(TC::COrderClient& desk, std::shared_ptr<CIntakeMeter> meter)
        : m_desk(desk), m_meter(std::move(meter)) {}

    void orderCommands(const TC::COrderComandParamPtr& command) override;
    void showTradeError(const QString& text, const QString& title) override;

private:
    TC::COrderClient& m_desk;
    const std::shared_ptr<CIntakeMeter> m_meter; ///< the control may end before the last command
};

/// The control of a desk that runs in this process. COrderService must exist while an operation on strategies
/// is called. Main thread. Desk and feed must outlive it.
class CLiveControl : public IDeskControl {
public:
    CLiveControl(CDesk& desk, CWindowFeed& feed);
    /// Waits for the cancels that were begun. COrderService must still exist.
    ~CLiveControl() override;

    /// Fills the feed with what the broker has now. Before trading starts.
    void feedStart();
    /// Measures the batches of the order service from now on. Once, after COrderService was made and before
    /// trading starts.
    void measure();
    const std::shared_ptr<CIntakeMeter>& meter() const { return m_meter; }
    /// The desk ends: from now on the state is "ending". A resume whose commands do not pass yet is given up.
    void setEnding();

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
    void cancelAccounts(std::vector<std::string> accounts) override;
    void halt() override;
    void resume() override;
    QStringList waitingFiles() const override;
    void discardQueue() override;
    void endConfirmationPause() override;

private:
    enum class EHalt { None, Halting, Halted, Resuming };

    QString prepareFile(const TC::COrderStrategyParam& strategy) const;
    void cancel(CCancelChoice choice);
    using CCancel = std::function<utils::KNError()>;
    void cancelAllWaiting();
    void cancelOrRetry(const CCancel& cancel);
    void tryAgain(const utils::KNError& error);
    void setHaltProblem(const QString& problem);
    void waitForAccepted();
    static void continueLater();
    static void continueHere();
    void finishHalt();
    void endHaltOfCommands();
    static void finishLater();
    void finishResume();
    void record(const char* action, int cancelled = 0);

    CDesk& m_desk;
    CWindowFeed& m_feed;
    const std::shared_ptr<CIntakeMeter> m_meter = std::make_shared<CIntakeMeter>();
    std::unique_ptr<TC::CIntakePause> m_pause; ///< while the desk is halted
    EHalt m_eHalt = EHalt::None;               ///< main thread
    bool m_bEnding = false;                    ///< main thread
    /// Whether the commands pass after a halt. Set once by the end of a resume, or by the end of the desk.
    enum class EGate { Undecided, Open, Closed };
    using CGate = std::atomic<EGate>;
    std::shared_ptr<CGate> m_gate = std::make_shared<CGate>(EGate::Undecided); ///< a new one for each resume
    static bool openGate(CGate& gate);
    int m_nStarting = TC::kUnsetInt; ///< the strategy that startStrategy starts; main thread
    mutable std::mutex m_mutex;      ///< guards the next one
    QString m_strHaltProblem;
    int m_nCancelled = 0;                  ///< by the halt; on the worker, until the halt is done
    std::unique_ptr<CDeskWorker> m_worker; ///< last member: its actions use the others
};

} // namespace desk
