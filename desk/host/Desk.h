#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/StrategyFile.h"
#include "desk/door/ControlDoor.h"
#include "desk/door/FunctionCalls.h"
#include "desk/host/DeskConfirmer.h"
#include "desk/host/DeskExchangeClient.h"
#include "desk/host/DeskInstrumentTypes.h"
#include "desk/host/DeskIntakeAudit.h"
#include "desk/host/DeskLuaModuleCtrl.h"
#include "desk/host/DeskMsgService.h"
#include "desk/host/DeskQuoteClient.h"
#include "desk/host/DeskTradeFrameworkSource.h"
#include "desk/host/DeskTradingRules.h"
#include "desk/host/DeskUserConfig.h"
#include "desk/host/InterfaceKeeper.h"
#include "desk/host/JournalGuard.h"
#include "desk/host/OrderLines.h"
#include "desk/host/PaperOrderClient.h"
#include "desk/host/PaperTradeClient.h"
#include "desk/host/PaperTraderCenter.h"
#include "desk/host/StrategyKeeper.h"
#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/market/Market.h"
#include "desk/paper/PaperBroker.h"
#include "orderservice/kit/AlgorithmTradeHelperBase.h"
#include "orderservice/kit/TimeServiceBase.h"
#include "orderservice/platform/Host.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace desk {

/// The whole desk: journal, market, paper broker, and the host services that use them. Main thread only; each
/// service names its own threads.
class CDesk {
public:
    /// The sink receives the messages for the user. It must outlive the desk.
    CDesk(std::string folder, CDeskConfig config, CTextSink& sink);
    ~CDesk();
    CDesk(const CDesk&) = delete;
    CDesk& operator=(const CDesk&) = delete;

    /// Sets a receiver of the broker's events, after the journal has taken them. It is called on any thread
    /// with the broker locked, so it must not call the broker and must not wait. Set it before open.
    void setOrderListener(std::function<void(const CBrokerEvent&)> listener) {
        m_orderListener = std::move(listener);
    }

    /// Parts of the desk for a program that shows them. Each may be used as its own class says.
    CJournal& journal() { return m_journal; }
    CPaperBroker& broker() { return m_broker; }
    CPaperOrderClient& orderClient() { return m_orders; }
    CPaperTradeClient& tradeClient() { return m_trade; }
    const IQuoteSource& quotes() const { return m_market; }
    const CDeskConfig& config() const { return m_config; }

    /// Opens journal and store. Must be called once, before all other calls. A failure names the cause.
    [[nodiscard]] utils::KNError open();

    /// The host services, to be passed to TC::installHost. They live as long as the desk.
    TC::CHost services();

    /// Questions about checked batches go to this dialog instead of the answer of desk.toml. The caller owns
    /// the dialog and keeps it until the end of the desk. Call it before startTrading.
    void setDialog(TC::IOrderConfirmer* dialog) { m_confirmer.setDialog(dialog); }

    /// Halts the desk, or ends the halt. While it is halted each command is recorded and declined, and
    /// nothing is confirmed. Does not pause the intake, and cancels nothing.
    void setHalted(bool isHalted) {
        m_orders.setHalted(isHalted);
        m_confirmer.setHalted(isHalted);
    }

    /// A second test of each change and each start of a strategy, when the desk itself accepts it. Returns
    /// the reason to refuse, or an empty text. It is called with the registry locked. Set it while no thread
    /// changes or starts a strategy.
    void setStrategyTest(std::function<QString(const TC::COrderStrategyParam&)> test) {
        m_strategyTest = std::move(test);
    }

    /// Where the layouts of the dialog's tables are kept. Call it before startTrading.
    void setTableLayouts(CTableLayouts layouts) { m_user.setTableLayouts(std::move(layouts)); }

    /// Connects to the order service, loads the folder's interfaces and starts the strategies that the folder
    /// marks as running. Then makes COrderFuncService and opens the control door. Call it after installHost
    /// and after the creation of COrderService.
    void startTrading();

    /// One round of the main loop: applies due quote changes, checks for a new day, checks the journal,
    /// journals and saves changed strategies, and shows what happened to the orders.
    void tick(double secondsSinceStart);

    /// A number that changes whenever something happens.
    std::int64_t activity() const;
    /// Whether more quote changes will come.
    bool hasQuotesToCome() const { return m_bQuotesToCome; }

    /// Saves the interfaces if they have changed; a failure names the file. Call it after
    /// COrderService::shutdown and before the release of COrderService.
    [[nodiscard]] utils::KNError saveInterfaces() { return m_interfaces.save(); }

    /// The number of orders that were accepted but not processed, by channel, as a text for the user. Empty
    /// if all were processed. Call it after COrderService::shutdown.
    std::string unplacedText() const { return m_audit.unplacedText(); }
    /// Orders that were not sent because they needed a confirmation and the desk was ending. Main thread.
    int notAskedOrders() const { return m_confirmer.notAskedOrders(); }

    /// Opens no dialog any more. Call it before COrderService::shutdown.
    void endQuestions() { m_confirmer.end(); }

    /// Refuses calls of functions from now on; one that runs goes on. Any thread.
    void refuseCalls() { m_calls.refuseNew(); }
    /// Whether a function call runs. Any thread.
    bool isCallRunning() const { return m_calls.isRunning(); }
    /// Closes the control door and waits until the call that runs is finished. After refuseCalls; any one
    /// thread.
    void finishCalls() { m_door.close(); }
    /// Releases COrderFuncService. After finishCalls, before releaseHost.
    static void releaseCalls() { CFunctionCalls::end(); }

    /// Writes what waits for the screen. For another thread, while the main thread waits in
    /// COrderService::shutdown and therefore calls no tick.
    void showProgress();

    /// Closes the journal. The last call, after COrderService::shutdown.
    [[nodiscard]] utils::KNError close(const std::string& reason);

private:
    QString whyRefused(const TC::COrderStrategyParam& strategy, const TC::COrderStrategyMap& all) const;
    void followTradingDay();
    std::size_t takeEvents(const std::vector<CBrokerEvent>& events);
    std::vector<std::string> orderTexts(const std::vector<int>& tasks);
    void openDoor();

    std::string m_strFolder;
    CDeskConfig m_config;
    CTextSink& m_sink;
    CJournal m_journal;
    CMarket m_market;
    COrderLines m_orderLines;
    std::function<void(const CBrokerEvent&)> m_orderListener;
    std::function<QString(const TC::COrderStrategyParam&)> m_strategyTest;
    CPaperBroker m_broker;
    CJournalGuard m_guard;
    bool m_bQuotesToCome = true;
    std::string m_strTradingDay; ///< the last day that was passed to the broker

    CDeskUserConfig m_user;
    CDeskUserManager m_userManager;
    CPaperOrderClient m_orders;
    CPaperTradeClient m_trade;
    CDeskExchangeClient m_exchange;
    CPaperAccounts m_accounts;
    CPaperTraderCenter m_center;
    CDeskQuoteClient m_quotes;
    CDeskInstrumentTypes m_types;
    CDeskTradingRules m_rules;
    kit::CAlgorithmTradeHelperBase m_algorithms;
    CDeskMsgService m_messages;
    kit::CTimeServiceBase m_time;
    CDeskTradeFrameworkSource m_framework;
    CDeskLuaModuleCtrl m_switches;
    CDeskIntakeAudit m_audit;
    CDeskConfirmer m_confirmer;
    CStrategyFile m_strategyFile;
    CStrategyKeeper m_keeper;
    CInterfaceKeeper m_interfaces;
    CFunctionCalls m_calls;
    CControlDoor m_door; ///< last member: its threads use the others
};

} // namespace desk
