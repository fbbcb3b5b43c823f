#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/KNError.h"
#include "orderservice/base/Log.h"
#include "orderservice/base/ManualSingleton.h"
#include "orderservice/platform/Host.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Basket.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/FuncParam.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

namespace TC {

class CFuncReporter;

/// Function trading: one call with the name of a function and a parameter text places or cancels orders. It
/// needs no strategy of the user: each call makes its own from the user's default settings.
/// docs/function-trading.md describes the functions, their parameters and their failures.
///
/// The host creates the service on its main thread after installHost, stores it with initInstance and calls
/// init. It ends its models, and calls release before releaseHost. It does not need a COrderService.
///
/// Besides the call-back the service has only a count of the calls that run. Unless stated otherwise, an
/// operation may be called from any thread, runs on its caller's thread, and throws a CHostError if the host
/// throws.
class ORDERSERVICE_EXPORT COrderFuncService : public QObject,
                                              public utils::CManualSingletonT<COrderFuncService> {
    Q_OBJECT
public:
    /// Gets the failures of calls: the number and the text of the call's trade key, and the error. It runs on
    /// the thread of the failed call; for a command that the trading layer refuses, on the thread of this
    /// object. If it throws, the user gets a message and the call continues.
    using COrderFailedCallback = boost::function<void(const int&, const std::string&, const utils::KNError&)>;
    using CAccounts = std::vector<boost::shared_ptr<CAccountInfo>>;

    COrderFuncService();
    ~COrderFuncService() override;

    /// Deletes the service and clears the singleton. Main thread. Inside a call-back of the library, and
    /// while a call of a function runs on any thread, it is refused with a message, and the service is kept.
    static void release();

    /// Registers onParamCallBack with the host's formula manager, if the host has one, and connects
    /// CTradeClient::sigOrderCheckFailed. Main thread, once.
    void init();
    /// Does nothing. The service has no settings of its own.
    void loadFromConfig();

    /// Calls doParserOrder without settings of an algorithm.
    void parseOrder(const std::string& func, const std::string& param);
    /// The entry of the formula manager: the same as parseOrder.
    void onParamCallBack(std::string func, std::string param);
    /// Performs the function: "cancel", "passorder", or "SMARTALGOPYPASSORDER" in any case. Another name is
    /// ignored. param: a JSON object in UTF-8. algoParam: the settings of an algorithm, used by the last
    /// function only.
    ///
    /// The results are commands, messages and failures. It blocks for up to two seconds for each instrument
    /// that waits for its quote. It throws bson::CError if the text of a cancel cannot be read. It
    /// throws boost::bad_lexical_cast if a call fails and the third of the three parts of its trade key is
    /// not a number: nothing was sent, and the user has the message of that failure, except for credit orders
    /// above the usable volume, whose failure only the caller gets.
    void doParserOrder(const std::string& func, const std::string& param, const std::string& algoParam);

    /// Replaces the call-back for failures. Call it before the first order: it is not guarded against a call
    /// that runs.
    void registOrderFailedCallback(COrderFailedCallback callback);
    /// Reads the trade key, "free|key|number", and calls the call-back with -1 and an empty text if the key
    /// does not have three parts. Throws boost::bad_lexical_cast if the third part is no 32-bit number.
    void orderCheckFaild(const std::string& tradeKey, const utils::KNError& error);
    /// Shows a text on the message panel and writes it to the log at this level.
    void sendMsg(QString& text, utils::ELogLevel level);
    /// Number -1 and the text. An empty text is no error.
    utils::KNError str2KNError(const std::string& text);

    // The steps of a call, in their order.

    /// Reads the parameter text. On failure `error` gets the text for the user. Does not throw for the
    /// content of the text.
    void parserParam(COrderFuncParam& param, const std::string& text, std::string& error);
    /// Adds the line of an option order. Returns false and sets `error` if the volume is zero.
    bool fillStkOptionParam(COrderFuncParam& param, PassorderFunOrderType op, std::string& error);
    /// Whether the order type trades a basket: 22, and 2000 to 2999.
    bool isComposeOrderType(int orderType);
    /// Makes the strategy of a call. Clears `error` first.
    COrderStrategyParam getStrategy(const COrderFuncParam& param, std::string& error);
    /// The key of the user's first account of the trade type's kind with this display id; otherwise the text.
    std::string translateAccountID(std::string id, EOrderStrategyTradeType tradeType);
    /// Fills the record of a basket's futures leg. Clears `error` first.
    void fillHedgeParam(CBasketHedgeParam& hedge, COrderStrategyParam& strategy, QString& futuresAccount,
                        QString& futuresCode, double ratio, std::string& error);
    /// Whether the strategy's group or account exists.
    bool checkAccount(const COrderStrategyParam& strategy);
    /// Whether every account of the strategy is logged in.
    bool checkAccountStatus(const COrderStrategyParam& strategy);
    /// Subscribes to the quotes of the instrument for as long as the result lives.
    boost::shared_ptr<CQuoteRequest> prepareCode(const QString& code, CAccounts& accounts);

    // The order routines. Each checks the call on all its accounts. Then it sends one command, or reports a
    // failure. If the user may not send commands, it does neither.

    /// Futures.
    void orderSpec(const COrderFuncParam& param, const COrderStrategyParam& strategy);
    /// Stocks and the connects. algoParam: the settings of an algorithm, or empty.
    void orderStock(const COrderFuncParam& param, const COrderStrategyParam& strategy, std::string algoParam);
    /// Baskets.
    void orderCompose(const COrderFuncParam& param, const COrderStrategyParam& strategy);
    /// Margin trading.
    void orderCredit(const COrderFuncParam& param, const COrderStrategyParam& strategy);
    /// Options on stocks.
    void orderOption(const COrderFuncParam& param, const COrderStrategyParam& strategy);

    // Volumes in shares or lots, and other help of the routines.

    /// The volume that the account can order; 0 if it is not known.
    long long getCanOrderVolume(std::string accountKey, EOperationType op, QString code, double price);
    /// The volume for a ratio of the account: of its assets for the order types 1113 and 1213, otherwise of
    /// what it can order.
    long long getAccountPercentNum(std::string& accountKey, EOperationType op, int orderType, QString& code,
                                   double price, double percent) const;
    /// The number of contracts that the money buys. The operation is not used.
    int getAccountFuturesNum(std::string& accountKey, EOperationType op, QString& code, double money,
                             double price) const;
    /// The legal volume: rounded down to the unit. A sale of everything that can be sold, and a purchase of
    /// 200 or more with the operation 1043, are not rounded. A unit below 1 is treated as 1.
    long long calcRightOrderVolume(EOperationType op, long long volume, int unit, long long canVolume);
    /// The message for the algorithm platform; empty if the settings cannot be read.
    std::string getAlgParamsStr(const std::string& text, std::vector<CCodeOrderParam> records);
    /// Turns the target positions of an account into the orders that reach them.
    void exchangePosition(boost::shared_ptr<CAccountInfo> account, QVector<COrderSingleParam>& orders);

    /// Cancels one order of an account, or all open ones. Throws bson::CError if the text cannot be read.
    void doCancelOrder(const std::string& func, const std::string& param);
    /// The number of the kind of account that a cancel names; -1 for an unknown word.
    int tranAccountType(const std::string& text);

public slots:
    /// The trading layer has refused a command: tells the caller that made it. A null command is ignored. If
    /// the report fails, the user gets a message instead: the slot does not throw.
    void slotOrderCheckFaild(const knservice::COrderCommandPtr& command, const utils::KNError& error);

private:
    class CRunningCall;
    class CEntry; ///< what the formula manager's call-back shares with the service

    void place(const std::string& func, const std::string& param, const std::string& algoParam);
    bool prepare(COrderFuncParam& funcParam, const std::string& text, COrderStrategyParam& strategy);
    /// Reports the text to the user and to the caller. Always returns false.
    bool failPlainly(const COrderFuncParam& funcParam, const QString& pattern, const QString& detail = {});
    CFuncReporter reporterOf(const COrderFuncParam& param) const;

    COrderFailedCallback m_orderFailedCallback;
    std::shared_ptr<CEntry> m_entry;
    CHostLease m_lease;
};

} // namespace TC
