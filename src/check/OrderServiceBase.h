#pragma once

#include "base/KNError.h"
#include "platform/Quote.h"
#include "platform/UserConfig.h"
#include "records/CommandParam.h"
#include "records/Families.h"
#include "records/OrderTypes.h"
#include "records/StrategyParam.h"

#include <QObject>
#include <QVector>

#include <boost/function.hpp>

#include <map>
#include <string>
#include <vector>

namespace TC {

/// The abstract order checker. COrderService owns one of its variants, which decides how batches are worked
/// through; the lookups, the checks of the product families and the issue of commands stand here.
///
/// Keeps no data: what it works on comes in as arguments, and the strategy map stays its caller's, who keeps
/// it unchanged during a call. All operations run on the caller's thread, may block it for up to two seconds
/// for each instrument that waits for its quote, and report a failure once, in words, before they return
/// false or null.
class COrderServiceBase : public QObject {
    Q_OBJECT
public:
    explicit COrderServiceBase(QObject* parent = nullptr);
    ~COrderServiceBase() override;

    /// Erases the strategies that are over the user's limits. A null map is left alone.
    virtual void filterStrategies(COrderStrategyMap* strategies) = 0;
    /// Works through a batch.
    virtual void placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) = 0;
    /// Issues checked orders; here it does nothing.
    virtual void placeLegalOrders(QVector<orderParamForOrderService> orders,
                                  const COrderStrategyMap* strategies);

    /// The strategy of the channel, or null after a message that names the source kind.
    const COrderStrategyParam* getStrategy(int channel, const COrderStrategyMap* strategies,
                                           EOrderStrategyType type) const;
    /// Whether the strategy's group or account exists.
    bool checkAccount(const COrderStrategyParam* strategy) const;
    /// The frame check of one order against its strategy.
    bool checkOrderParamValid(const COrderParam& order, const COrderStrategyParam* strategy) const;
    /// Resolves the accounts that an order goes to. `accountKey` comes in as the caller's choice and is
    /// replaced where the order names an account itself. Appends to accounts and ratios; fills weights by
    /// account key on request.
    bool checkAccountKey(const COrderParam& order, const COrderStrategyParam& strategy, QString& accountKey,
                         std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                         std::map<std::string, double>& weights, bool fillWeights) const;
    /// Whether the order's price can be used.
    bool isPriceTypeVailed(const COrderSetting& setting, const COrderParam& order,
                           const CPriceDataPtr& priceData, EOperationType op, EQDBrokerType broker,
                           const CStockInfo& stock) const;
    EOrderType getOrderType(const COrderParam& order, const COrderStrategyParam& strategy) const;
    ETradePlatform getTradePlatform(const COrderParam& order, const COrderStrategyParam& strategy) const;
    EQdTraderType getStrategyTradeType(EOrderStrategyTradeType tradeType) const;
    /// The label of a source kind at the head of every message; depends on the user's rights.
    QString getOrderStrategyText(EOrderStrategyType type) const;

    /// Starts the quotes of an instrument. The caller holds the result until it is done with the order.
    boost::shared_ptr<CQuoteRequest> prepareCode(const QString& code,
                                                 std::vector<CAccountInfoPtr>& accounts) const;

    /// The family checks. Each appends one record for each account that gets a volume; true can come with
    /// none. The end of a single credit contract has one record, for the account that the order names. A
    /// check also fills the weights by account key, whatever records come of it.
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
    /// Only tells whether the order may go out: appends no record.
    bool checkAndFillOrderNeeq(COrderParam order, COrderStrategyParam strategy,
                               std::vector<CCodeOrderParam>& codes,
                               std::map<std::string, double>& weights) const;
    /// A target position in the order is rewritten into the orders that lead to it.
    bool checkAndFillOrderCompose(COrderParam& order, COrderStrategyParam strategy,
                                  std::vector<CCodeOrderParam>& codes,
                                  std::map<std::string, double>& weights) const;

    /// Turns target volumes, times the multiplier, into the orders that lead to them from what the account
    /// holds.
    void exchangePositionStock(boost::shared_ptr<CAccountInfo> account, QVector<COrderSingleParam>& rows,
                               int multiplier) const;
    /// Shares an amount of money out over the rows by weight, as volumes in whole units.
    void calcVolumnByWeight(QVector<COrderSingleParam>& rows, double amount) const;

    using CCommandCallback = boost::function<void(utils::KNError, int)>;

    /// Hands a finished command of the order to COrderClient::orderCommands. Every command leaves the library
    /// here. With the deployment switch "mdl_order_command_guard" on, a command with a record that lacks its
    /// market, code, price or volume is refused instead, with a report (check/CommandGuard.h). Any thread;
    /// the command is not null.
    void sendCommand(const COrderComandParamPtr& command, const COrderParam& order) const;
    /// Makes one command of checked records and sends it with sendCommand; the guard first leaves out what a
    /// sale of all cannot sell. The remark is the order's own: `remark` and `callback` are taken and dropped.
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
    /// Title of the confirmation dialog.
    QString getTitle() const;
    /// The strategy's default command remark, UTF-8; writes the trader type that the strategy's family stands
    /// for, or leaves it where the family has none.
    std::string getCmdLog(const COrderStrategyParam& strategy, EQdTraderType& traderType) const;

signals:
    void sigPlaceLegalOrders(QVector<TC::orderParamForOrderService> orders,
                             const QMap<int, TC::COrderStrategyParam>* strategies);
};

/// Whether the user's kind may issue commands. For any other kind orders are checked and nothing goes out.
bool isCmdUser();

} // namespace TC
