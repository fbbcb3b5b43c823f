#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/ManualSingleton.h"
#include "orderservice/gates/OrderGate.h"
#include "orderservice/gates/StrategyRegistry.h"
#include "orderservice/platform/Host.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"
#include "orderservice/records/TradeInterface.h"

#include <QMap>
#include <QObject>
#include <QVector>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
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
class IBatchVariant;
enum class EBatchFate;

/// The order service. All orders reach the order checkers through this singleton. It chooses the variant of
/// the checker for the user, owns the threads of the order path, keeps the strategies, and queues calls from
/// any thread to its own thread.
///
/// The host creates it on its main thread after installHost and stores it with initInstance. Then the host
/// creates the COrderServiceAdapter. It calls loadFromConfig once the user is logged in. At the end of the
/// process it calls shutdown, COrderServiceAdapter::release and release, in this order, before releaseHost.
class ORDERSERVICE_EXPORT COrderService : public QObject,
                                          public utils::CManualSingletonT<COrderService>,
                                          public IOrderGate,
                                          public IStrategyRegistry {
    Q_OBJECT
public:
    /// Starts the service's thread and moves this object to it. An object with a parent cannot be moved, so
    /// `parent` is ignored. The host deletes the service with release.
    explicit COrderService(QObject* parent = nullptr);
    /// Calls shutdown first if it was not called yet. Only release may delete the object.
    ~COrderService() override;

    /// Shuts the service down, deletes it and clears the singleton. If it is called inside a call-back of the
    /// library, it is refused with a message, and the service is kept. A call-back runs on one of the
    /// service's own threads, or in a service or receiver of the host that an operation of the library has
    /// called. An automatic connection with the service as receiver runs on the service's thread.
    static void release();

    /// Binds the service to the logged-in user. Chooses the variant, removes the strategies over the user's
    /// limits, starts those that the configuration remembers as running, and starts the file thread. If no
    /// user is logged in, it only unbinds the strategies of the previous user. A repeated call keeps variant
    /// and thread, and starts the remembered strategies again. showMsg: whether a message is shown for each
    /// started strategy. If a service of the host throws or returns no map of strategies, no strategy is
    /// bound or runs, and a message gives the reason.
    void loadFromConfig(bool showMsg);

    /// Stops reading orders, processes every accepted batch, and ends the service's threads. Nothing that was
    /// taken from a file is lost. Afterwards the service refuses orders with a message and starts no
    /// strategy; a second call does nothing. Like release, it is refused with a message inside a call-back of
    /// the library. It waits until the host's services that run on the library's threads have returned. If
    /// such a service waits for the thread that calls shutdown, shutdown never returns.
    ///
    /// Batches of a two-pass variant that wait for the user's confirmation are not finished here. The main
    /// thread delivers them, but it usually waits in this call. So they are delivered after shutdown, if the
    /// main thread runs its event loop before it releases the adapter. Batches that are left when the adapter
    /// or the service is released are reported as dropped.
    void shutdown();

    /// For a user who does not want to wait for shutdown any longer. The service finishes the current order
    /// and drops all orders after it. CIntakeAudit::recordUnplaced gets each dropped batch. Cancels are still
    /// carried out. Any thread, before or during shutdown; cannot be undone.
    void dropBacklog();
    /// The number of checked batches that wait because the user is asked about something else, or because
    /// another batch is being placed. Any thread.
    int delayedBatches() const;

    /// The interfaces of the trade framework in the host's settings document. The host calls the next three
    /// functions on one thread at a time, and links Qt Xml for the document.

    /// Finds the first element "interfaceTrade" at any depth below `element`, reads its interfaces and adds
    /// them to those read before. Does nothing if there is no such element. Throws bson::CError at an
    /// interface whose text is malformed or missing; the interfaces before it have been added by then.
    void loadSettings(QDomElement& element);
    /// Appends the interfaces that CTradeFrameworkSource::getAllInterfaces returns, not the loaded ones, to
    /// `element`. That is an "interfaceTrade" element that the host has made in the document. Each interface
    /// becomes one child with its name as tag. The names are not checked against the rules of XML, and an
    /// interface with an empty name is skipped. Rethrows exceptions of getAllInterfaces and of the records
    /// after a message; nothing has been appended then.
    void saveSettings(QDomElement& element, QDomDocument& document);
    /// The interfaces that loadSettings has read, in the order of the document.
    const knservice::TradeInterfaceList& interfaces() const { return m_interfaces; }

    /// Any thread; queued. On the service's own thread the orders are processed before the call returns. The
    /// call emits sigPlaceOrders; if a receiver throws, the exception is reported and the orders are still
    /// placed.
    void placeorder(COrderParam order) override;
    void placeOrders(QVector<COrderParam> orders) override;
    /// Passes checked orders of the host to the variant on the caller's thread, with a copy of the current
    /// strategies. Does nothing if there is no variant. The one-pass variant places no checked orders: it
    /// ignores them. Exceptions of the variant reach the caller. A receiver of sigPlaceLegalOrders that
    /// passes the signal's list here has placed the batch: the adapter does not place it again.
    void placeLegalOrders(QVector<orderParamForOrderService> orders);
    /// Any thread; queued behind the orders that were placed before. The call emits sigCancelOrder; if a
    /// receiver throws, the exception is reported and the task is still cancelled.
    void cancelOrder(int taskId) override;
    /// Any thread. After shutdown the ticket is released at once.
    void holdUntilProcessed(std::shared_ptr<const void> ticket) override;
    /// Emits sigCancelOrders on the calling thread. Throws CHostError if a receiver throws; the order file is
    /// then not read further.
    void cancelOrders(std::vector<std::string>& fields) override;

    /// Whether the channel number of an order line means the strategy that reads the line: channel 0. Any
    /// thread.
    bool isUniversal(int channel) const;

    /// Whether any strategy runs.
    bool hasRunning() const;
    /// One line for each running strategy, in key order.
    QString getStatusBarTip() const;
    /// The variant, or null.
    COrderServiceBase* getOrderService() const;

    /// Functions for strategies. They return 0 for success and -1 for failure unless stated otherwise. Any
    /// thread. A call can wait until the file thread has finished its current pass over the files.

    /// Sets the host's own test, which is called before each change and each start of a strategy. It gets the
    /// new version of the strategy and all strategies as they are now. It returns the reason to refuse, for
    /// users, or an empty text to accept. A refused change shows a message and returns -1; a refused start
    /// returns the reason as its error. The test runs on the thread of the operation with the registry
    /// locked, so it must not wait for a thread that needs a strategy. Set it before loadFromConfig, which
    /// starts strategies. Without a test nothing is refused.
    void setStrategyGuard(
        std::function<QString(const COrderStrategyParam&, const QMap<int, COrderStrategyParam>& all)> guard);

    /// Returns the new strategy's id, or -1 if no user is bound. The id of a strategy that loadFromConfig
    /// removed because of the user's limit is not used again, because the user's configuration still has that
    /// strategy.
    int addOrderStrategy(EOrderStrategyType type);
    /// Replaces the stopped strategy that has the id param.m_nChannel. `id` is not used.
    int updateOrderStrategy(int id, COrderStrategyParam param);
    /// A running strategy can be removed: its files are no longer read.
    int removeOrderStrategy(int id);
    /// Returns a copy that shares no data with the host's map.
    QMap<int, COrderStrategyParam> getStrategyMap() const;
    /// The record itself or null. The pointer is valid until the record is removed, and the record is read
    /// without a lock. Use it only while no other thread changes the strategies.
    const COrderStrategyParam* getStrategyConst(int id) const;
    /// The same for a host that writes to the record. The next order uses what was written. After the first
    /// call the strategy is copied for each of its orders, and revision does not include what was written.
    /// So a host that only reads calls getStrategyConst, and updateOrderStrategy is the better way to write.
    COrderStrategyParam* getStrategy(int id);
    /// Starts a strategy. For a file strategy, a file that already waits is deleted unread. `error` gets the
    /// reason of a failure, and can contain a note after a success.
    int startOrderStrategy(int id, QString& error, bool showMsg);
    int stopOrderStrategy(int id, QString& error);
    /// DBF order tables are not supported yet: shows a message and returns -1.
    int addDbfStrategy(COrderStrategyParam& param);

    QString getOrderStrategyText(EOrderStrategyType type) const override;
    std::string defaultRemark(const COrderStrategyParam& strategy) const override;
    COrderStrategyPtr strategyOf(int channel) override;
    void visitStrategies(const std::function<void(int, const COrderStrategyParam&)>& visit) override;
    std::uint64_t revision() const override;

signals:
    /// Checked orders for the main thread; COrderServiceAdapter receives them and has them placed. Emitted on
    /// the thread that processed the batch. The map belongs to the library. A receiver with a direct
    /// connection may use it until it returns. A queued receiver on the main thread may use it too, but not
    /// after it has run an event loop, and not after the service was released. Other receivers must not use
    /// the map.
    void sigPlaceLegalOrders(QVector<TC::orderParamForOrderService> orders,
                             const QMap<int, TC::COrderStrategyParam>* strategies);
    /// A strategy was started or stopped; the argument is hasRunning(). Emitted with the registry locked.
    void sigSetStatus(bool running);
    /// Orders, or the cancel of a task, for the service's thread. They are queued before the host's own
    /// receivers are called. A directly connected receiver is called on the thread that placed the order. The
    /// library holds no lock of its own during this call, except those that the thread held before: the file
    /// thread holds the registry's lock.
    void sigPlaceOrders(QVector<TC::COrderParam> orders);
    void sigCancelOrder(int taskId);
    /// For the host. The library never emits it.
    void sigStopStrategy(int id, int reason);
    /// The fields of a `cancel_order` line, the word included. Emitted on the file thread with the registry
    /// locked. Connect with Qt::DirectConnection: the reference cannot be queued.
    void sigCancelOrders(std::vector<std::string>& fields);

public slots:
    /// The slots run on the service's thread and report every exception of the host. The library calls them
    /// itself.

    /// Passes the new trading day of CExchangeClient to the trade framework.
    void slotNewTradingDate(std::string date);
    /// Processes a batch with the variant. Orders that cannot be processed are reported, for instance if no
    /// user is bound or dropBacklog was called.
    void slotPlaceOrders(QVector<TC::COrderParam> orders);
    /// Passes the cancel of a task to CTradeClient.
    void slotCancelOrder(int taskId);
    /// Receives the answer to a cancel by order from CTradeClient. If the cancel failed, the audit gets
    /// `message`, the text of the failure. While shutdown waits for the last batches, an answer may be
    /// received on the host's thread. Answers after shutdown are not received.
    void slotDbfCancelOrder(knservice::COrderInfoPtr info, bool success, std::string message);

protected:
    /// Runs on the service's thread. The host can post calls there, by a connection with the service as
    /// receiver or by QMetaObject::invokeMethod. If such a call throws, the exception is reported and the
    /// thread continues.
    bool event(QEvent* event) override;

private:
    friend struct COrderServicePeer; ///< lets tests call exchangePosition

    /// Replaces target volumes by the orders that change the account's stock positions to the targets. If the
    /// host has no data of the account or fails, the rows do not change. Any thread; locks the account's data
    /// during the call.
    void exchangePosition(boost::shared_ptr<CAccountInfo> account, QVector<COrderSingleParam>& rows) const;

    bool isInside() const;
    void connectOwnSignals();
    void connectHost();
    void bindUser(bool showMsg);
    void unbind();
    void processBatch(const QVector<COrderParam>& orders);
    void announceStatus(bool isAnyRunning);
    void changeUser(const COrderStrategyMap* strategies, const std::string& userName);
    EBatchFate fateOfBatch() const;
    void chooseVariant(const CUserConfig& user);
    void startFileThread();
    void disconnectHost();

    struct CThreads;

    const CHostLease m_hostLease; ///< first member, so that it is destroyed last
    std::unique_ptr<CSocketListeners> m_listeners;
    std::unique_ptr<CStrategyRegistry> m_registry;
    std::unique_ptr<COrderServiceBase> m_orderService;
    const COrderStrategyMap* m_pUserStrategies = nullptr; ///< the bound map; only compared; registry's mutex
    std::string m_strUserName;                            ///< of the bound user; registry's mutex
    std::atomic<std::int64_t> m_nUser{0};                 ///< another number for each user
    std::atomic<std::int64_t> m_nUserOfBatch{0};          ///< when the service's thread began its last batch
    std::atomic<COrderServiceBase*> m_pVariant{nullptr};  ///< m_orderService after it is chosen; null before
    std::atomic<IBatchVariant*> m_pBatchVariant{nullptr}; ///< the same object
    std::unique_ptr<CFileService> m_fileService;
    std::unique_ptr<CThreads> m_threads;
    std::vector<QMetaObject::Connection> m_hostConnections;
    std::atomic<bool> m_bDropping{false};
    knservice::TradeInterfaceList m_interfaces;
};

} // namespace TC
