#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/KNError.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/OrderTypes.h"
#include "orderservice/records/StrategyParam.h"

#include <QObject>
#include <QVector>

#include <boost/function.hpp>

#include <map>
#include <string>
#include <vector>

namespace TC {

/// The abstract order checker. COrderService owns one of its variants. The variant decides how batches are
/// processed. The look-ups, the checks of the product families and the sending of commands are in this class.
///
/// The class has no state. The caller owns the strategy map and must not change it during a call. All
/// operations run on the caller's thread, and may block it for up to two seconds for each instrument that
/// waits for its quote. A failure is reported once with a message before the operation returns false or null.
class ORDERSERVICE_EXPORT COrderServiceBase : public QObject {
    Q_OBJECT
public:
    explicit COrderServiceBase(QObject* parent = nullptr);
    ~COrderServiceBase() override;

    /// Erases the strategies that are over the user's limits. A null map is left alone.
    virtual void filterStrategies(COrderStrategyMap* strategies) = 0;
    /// Processes a batch.
    virtual void placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) = 0;
    /// Sends checked orders. This base class does nothing.
    virtual void placeLegalOrders(QVector<orderParamForOrderService> orders,
                                  const COrderStrategyMap* strategies);
    /// Whether placeLegalOrders may ask the user about this batch. Such a batch waits while he is asked about
    /// another one; other batches are sent meanwhile. This base class returns true. Main thread.
    virtual bool mayAsk(const QVector<orderParamForOrderService>& orders,
                        const COrderStrategyMap& strategies) const noexcept;

    /// Returns the strategy of the channel, or null after a message that names the source kind.
    const COrderStrategyParam* getStrategy(int channel, const COrderStrategyMap* strategies,
                                           EOrderStrategyType type) const;
    /// Whether the strategy's group or account exists.
    bool checkAccount(const COrderStrategyParam* strategy) const;
    /// The frame check of an order: its strategy exists and runs, the strategy's account exists, and the
    /// source kind of the strategy is that of the order.
    bool checkOrderParamValid(const COrderParam& order, const COrderStrategyParam* strategy) const;
    /// Finds the accounts of an order. `accountKey` is the caller's choice; it is replaced if the order names
    /// an account itself. Appends to `accounts` and `ratios`. If `fillWeights` is true, also fills `weights`
    /// by account key.
    bool checkAccountKey(const COrderParam& order, const COrderStrategyParam& strategy, QString& accountKey,
                         std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                         std::map<std::string, double>& weights, bool fillWeights) const;
    /// Whether the order's price can be used.
    bool isPriceTypeVailed(const COrderSetting& setting, const COrderParam& order,
                           const CPriceDataPtr& priceData, EOperationType op, EQDBrokerType broker,
                           const CStockInfo& stock) const;
    /// The order's kind. If it is not set, the strategy's kind. If that is not set either, a plain order.
    EOrderType getOrderType(const COrderParam& order, const COrderStrategyParam& strategy) const;
    /// The platform of the order's algorithm. Without an algorithm, the plain platform. Asks the host.
    ETradePlatform getTradePlatform(const COrderParam& order, const COrderStrategyParam& strategy) const;
    /// The family bit that a command of this family has.
    EQdTraderType getStrategyTradeType(EOrderStrategyTradeType tradeType) const;
    /// The label of a source kind at the start of every message; depends on the user's rights.
    QString getOrderStrategyText(EOrderStrategyType type) const;

    /// Subscribes to the quotes of an instrument. The caller keeps the result until it has finished with the
    /// order. `accounts` is not used.
    boost::shared_ptr<CQuoteRequest> prepareCode(const QString& code,
                                                 std::vector<CAccountInfoPtr>& accounts) const;

    /// The family checks. Each appends one record for each account that gets a volume; it can return true
    /// without any record. The end of a single credit contract has one record, for the account that the order
    /// names. Each check also fills the weights by account key, even if there are no records.
    bool checkAndFillOrderStock(COrderParam order, COrderStrategyParam strategy,
                                std::vector<CCodeOrderParam>& codes,
                                std::map<std::string, double>& weights) const;
    bool checkAndFillOrderSpec(COrderParam order, COrderStrategyParam strategy,
                               std::vector<CCodeOrderParam>& codes,
                               std::map<std::string, double>& weights) const;
    bool checkAndFillOrderFutureOption(COrderParam order, COrderStrategyParam strategy,
                                       std::vector<CCodeOrderParam>& codes,
                                       std::map<std::string, double>& weights) const;
    bool checkAndFillOrderOption(COrderParam order, COrderStrategyParam strategy,
                                 std::vector<CCodeOrderParam>& codes,
                                 std::map<std::string, double>& weights) const;
    bool checkAndFillOrderSGT(COrderParam order, COrderStrategyParam strategy,
                              std::vector<CCodeOrderParam>& codes,
                              std::map<std::string, double>& weights) const;
    bool checkAndFillOrderHGT(COrderParam order, COrderStrategyParam strategy,
                              std::vector<CCodeOrderParam>& codes,
                              std::map<std::string, double>& weights) const;
    bool checkAndFillOrderGold(COrderParam order, COrderStrategyParam strategy,
                               std::vector<CCodeOrderParam>& codes,
                               std::map<std::string, double>& weights) const;
    bool checkAndFillOrderCredit(COrderParam order, COrderStrategyParam strategy,
                                 std::vector<CCodeOrderParam>& codes,
                                 std::map<std::string, double>& weights) const;
    /// Checks only whether the order may be sent; appends no record.
    bool checkAndFillOrderNeeq(COrderParam order, COrderStrategyParam strategy,
                               std::vector<CCodeOrderParam>& codes,
                               std::map<std::string, double>& weights) const;
    /// Target positions in the order are replaced by the orders that change the holdings to the targets.
    bool checkAndFillOrderCompose(COrderParam& order, COrderStrategyParam strategy,
                                  std::vector<CCodeOrderParam>& codes,
                                  std::map<std::string, double>& weights) const;

    /// Replaces target volumes, times the multiplier, by the orders that change the account's stock positions
    /// to them.
    void exchangePositionStock(boost::shared_ptr<CAccountInfo> account, QVector<COrderSingleParam>& rows,
                               int multiplier) const;
    /// Divides an amount of money over the rows by weight, and writes the volumes that the parts buy, in
    /// whole units.
    void calcVolumnByWeight(QVector<COrderSingleParam>& rows, double amount) const;

    using CCommandCallback = boost::function<void(utils::KNError, int)>;

    /// Makes one command of checked records and passes it to COrderClient::orderCommands. The remark is taken
    /// from the order; `remark` and `callback` are ignored. If the deployment switch
    /// "mdl_order_command_guard" is on, it first leaves out records of a sale of all positions that cannot be
    /// sold, and refuses the command with a report if a record has no market, code, price or volume
    /// (check/CommandGuard.h). Any thread.
    void doOrderCommand(EQdTraderType traderType, EQdHedgeType hedgeType, EFtSpecBtnBarType btnType,
                        const std::vector<CCodeOrderParam>& codes, std::map<std::string, double> weights,
                        EQdStopLossType stopLossType, bool unionCommand, CCommandCallback callback,
                        bson::BSONObj extra, std::string tag, ETradePlatform platform, std::string algoParam,
                        bool commandFlag, bool forceConfirm, std::string remark, const COrderParam& order,
                        const COrderStrategyParam& strategy) const;
    /// The parameter text of an algorithm order, or an empty text.
    std::string get3rdAlgoParam(const COrderParam& order, const std::vector<CCodeOrderParam>& codes,
                                const COrderStrategyParam& strategy) const;
    /// Stores nothing in this version.
    void saveOrderCommand(COrderComandParamPtr command) const;
    /// The title of the confirmation dialog.
    QString getTitle() const;
    /// Returns the strategy's default command remark, UTF-8. Writes the trader type of the strategy's family
    /// to `traderType`, or leaves it unchanged if the family has none.
    std::string getCmdLog(const COrderStrategyParam& strategy, EQdTraderType& traderType) const;

signals:
    /// A variant with two passes emits the orders that it has checked, with a map of their strategies. The
    /// map needs to live only until emit returns. COrderService passes the orders to the main thread.
    void sigPlaceLegalOrders(QVector<TC::orderParamForOrderService> orders,
                             const QMap<int, TC::COrderStrategyParam>* strategies);
};

/// Whether the user's kind may send commands. For users of other kinds, orders are checked but not sent.
ORDERSERVICE_EXPORT bool isCmdUser();

} // namespace TC
