#pragma once

#include "base/ManualSingleton.h"
#include "gates/OrderGate.h"
#include "gates/StrategyRegistry.h"
#include "platform/Host.h"
#include "records/Account.h"
#include "records/CommandParam.h"
#include "records/OrderParam.h"
#include "records/StrategyParam.h"
#include "records/TradeInterface.h"

#include <QMap>
#include <QObject>
#include <QVector>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QDomDocument;
class QDomElement;

namespace TC {

class CFileService;
class CSocketListeners;
class COrderServiceBase;
class CStrategyRegistry;
class CUserConfig;

/// The order service: everything reaches the order checkers through this singleton. Chooses the variant that
/// the user gets, owns the threads of the order path, keeps the strategies, and turns calls from any thread
/// into queued work on its own thread.
///
/// The host creates it on its main thread after installHost and stores it with initInstance, creates the
/// COrderServiceAdapter after it, and calls loadFromConfig once the user is logged in. At the end of the
/// process it calls shutdown and release, in that order, before releaseHost.
class COrderService : public QObject,
                      public utils::CManualSingletonT<COrderService>,
                      public IOrderGate,
                      public IStrategyRegistry {
    Q_OBJECT
public:
    /// Starts the service's thread and moves to it. An object with a parent cannot move, so `parent` is not
    /// kept: the host deletes the service through release.
    explicit COrderService(QObject* parent = nullptr);
    /// Shuts down first if shutdown was not called. Through release only.
    ~COrderService() override;

    /// Deletes the service that initInstance stored and forgets it; shuts it down first. Refused with a
    /// message, and the service stays, inside a call-back of the library: on one of its own threads, or in a
    /// service or receiver of the host that an operation of the library has called. An automatic connection
    /// with the service as receiver runs on the service's thread.
    static void release();

    /// Binds the service to the logged-in user: chooses the variant, filters the strategies over the user's
    /// limits, starts those that the configuration remembers as running, and starts the file thread. Without
    /// a user it lets go of the former one's strategies and does no more. A repeated call keeps variant and
    /// thread and starts again what is remembered as running. showMsg: whether each started strategy is
    /// announced. If a service of the host throws or gives no map of strategies, no strategy is bound or
    /// runs, and a message says why.
    void loadFromConfig(bool showMsg);

    /// Ends the intake, works off every batch that was accepted, and ends the service's threads. Nothing that
    /// was taken from a file is lost. Afterwards the object accepts nothing more: orders are refused with a
    /// message, strategies do not start, and a second call does nothing. Refused with a message inside a
    /// call-back of the library, as release is. Waits for the services that the library's threads are in: a
    /// service that waits for the thread that calls shutdown never lets it return.
    void shutdown();

    /// For a user who does not want to wait for shutdown any longer. The service finishes the order in hand
    /// and drops all orders behind it; CIntakeAudit::recordUnplaced gets each batch that is dropped. Cancels
    /// are still carried out. Any thread, before or while shutdown waits; cannot be undone.
    void dropBacklog();

    /// The interfaces of the trade framework in the host's settings document. The host calls these three on
    /// one thread at a time, and links Qt Xml for the document.

    /// Reads the interfaces below the first element "interfaceTrade" that stands anywhere below `element` and
    /// adds them to those read before; without one does nothing. Throws bson::CError at an interface whose
    /// text is bad or missing; those before it have been added then.
    void loadSettings(QDomElement& element);
    /// Appends what CTradeFrameworkSource::getAllInterfaces gives, and not what was loaded, to `element`,
    /// which is an "interfaceTrade" of the document that the host has made: one child for each interface,
    /// with its name as tag. The document does not hold names to what XML allows, and an interface with an
    /// empty name is not in it. Throws what getAllInterfaces and the records throw, after a message; nothing
    /// has been appended then.
    void saveSettings(QDomElement& element, QDomDocument& document);
    /// What loadSettings has read, in that order.
    const knservice::TradeInterfaceList& interfaces() const { return m_interfaces; }

    /// Any thread; queued. On the service's own thread the orders are worked off before the call returns.
    void placeorder(COrderParam order) override;
    void placeOrders(QVector<COrderParam> orders) override;
    /// Hands checked orders to the variant on the caller's thread; without a variant does nothing.
    void placeLegalOrders(QVector<orderParamForOrderService> orders);
    void cancelOrder(int taskId) override;
    void holdUntilWorkedOff(std::shared_ptr<const void> ticket) override;
    /// Emits sigCancelOrders on the calling thread. Throws CHostError if a receiver throws; an order file is
    /// not read further then.
    void cancelOrders(std::vector<std::string>& fields) override;

    /// Rewrites target volumes into the orders that lead to them from the account's stock positions; without
    /// data of the account the rows stay as they are. Any thread; holds the account's data still meanwhile.
    void exchangePosition(boost::shared_ptr<CAccountInfo> account, QVector<COrderSingleParam>& rows) const;

    /// Whether any strategy runs.
    bool hasRunning() const;
    /// One line for each running strategy, in key order.
    QString getStatusBarTip() const;
    /// The variant, or null.
    COrderServiceBase* getOrderService() const;

    /// Strategies. 0 for success and -1 for failure unless stated; any thread; a call can wait for a pass of
    /// the file loop to end.

    /// A test of the host's own, called before each change and each start of a strategy with the strategy as
    /// it would be and all strategies as they are. It gives the reason to refuse it, for people, or an empty
    /// text. A refused change gives -1 after a message, a refused start the reason as its error. Called on
    /// the thread of the operation with the registry locked: it must not wait for a thread that wants a
    /// strategy. Set it before loadFromConfig, which starts strategies; without one nothing is refused.
    void setStrategyGuard(
        std::function<QString(const COrderStrategyParam&, const QMap<int, COrderStrategyParam>& all)> guard);

    /// The new strategy's id, or -1 while no user is bound. The id of a strategy that loadFromConfig left out
    /// over the user's limit is not given: the user's configuration still has that one.
    int addOrderStrategy(EOrderStrategyType type);
    /// Replaces the stopped strategy that has param.m_nChannel. `id` plays no part in the search.
    int updateOrderStrategy(int id, COrderStrategyParam param);
    /// A running strategy can be removed: it drops out of the file loop.
    int removeOrderStrategy(int id);
    /// A copy that shares nothing with the host's map.
    QMap<int, COrderStrategyParam> getStrategyMap() const;
    /// The record itself or null. The pointer holds as long as nothing removes the record and is read without
    /// a lock: only for callers that keep the registry still.
    const COrderStrategyParam* getStrategyConst(int id) const;
    COrderStrategyParam* getStrategy(int id);
    /// Starts a strategy; a file strategy's waiting file is deleted unread. `error` gets the reason of a
    /// failure, and can hold a note after a success.
    int startOrderStrategy(int id, QString& error, bool showMsg);
    int stopOrderStrategy(int id, QString& error);
    /// DBF order tables are not built yet: refuses with a message and -1.
    int addDbfStrategy(COrderStrategyParam& param);

    QString getOrderStrategyText(EOrderStrategyType type) const override;
    std::string defaultRemark(const COrderStrategyParam& strategy) const override;
    std::optional<COrderStrategyParam> copyStrategy(int channel) override;
    void visitStrategies(const std::function<void(int, const COrderStrategyParam&)>& visit) override;

signals:
    /// Checked orders on their way to the main thread.
    void sigPlaceLegalOrders(QVector<TC::orderParamForOrderService> orders,
                             const QMap<int, TC::COrderStrategyParam>* strategies);
    /// A strategy was started or stopped; the argument is hasRunning(). Emitted with the registry locked.
    void sigSetStatus(bool running);
    /// Orders, or the cancel of a task, on their way to the service's thread: queued before the host's own
    /// receivers are called. Those that are connected directly are called on the thread that placed the
    /// order, with no lock of the library held but what that thread held already: on the file thread that is
    /// the registry.
    void sigPlaceOrders(QVector<TC::COrderParam> orders);
    void sigCancelOrder(int taskId);
    /// For the host; nothing here emits it.
    void sigStopStrategy(int id, int reason);
    /// A `cancel_order` line: the word and its fields. Emitted on the file thread with the registry locked.
    /// Connect with Qt::DirectConnection: the reference cannot be queued.
    void sigCancelOrders(std::vector<std::string>& fields);

public slots:
    void slotNewTradingDate(std::string date);
    void slotPlaceOrders(QVector<TC::COrderParam> orders);
    void slotCancelOrder(int taskId);
    void slotDbfCancelOrder(knservice::COrderInfoPtr info, bool success, std::string message);

protected:
    /// Runs on the service's thread. What the host has posted there, by a connection with the service as
    /// receiver or by QMetaObject::invokeMethod, may throw: it is reported, and the thread goes on.
    bool event(QEvent* event) override;

private:
    bool isInside() const;
    void connectOwnSignals();
    void connectHost();
    void bindUser(bool showMsg);
    void unbind();
    void workOff(const QVector<COrderParam>& orders);
    void announceStatus(bool isAnyRunning);
    void chooseVariant(const CUserConfig& user);
    void startFileThread();
    void disconnectHost();
    bool beginOrder(int channel);

    struct CThreads;
    /// A batch that the variant is working on.
    struct CBatch {
        COrderStrategyMap strategies;
        int begun = 0;      ///< orders that the variant has begun with
        bool isCut = false; ///< the rest was dropped
    };

    const CHostLease m_hostLease; ///< first: the host goes last
    std::unique_ptr<CSocketListeners> m_listeners;
    std::unique_ptr<CStrategyRegistry> m_registry;
    std::unique_ptr<COrderServiceBase> m_orderService;
    std::atomic<COrderServiceBase*> m_pVariant{nullptr}; ///< m_orderService, once it is chosen
    std::unique_ptr<CFileService> m_fileService;
    std::unique_ptr<CThreads> m_threads;
    std::vector<QMetaObject::Connection> m_hostConnections;
    CBatch* m_pInHand = nullptr; ///< the innermost one; the service's thread alone
    std::atomic<bool> m_bDropping{false};
    knservice::TradeInterfaceList m_interfaces;
};

} // namespace TC
