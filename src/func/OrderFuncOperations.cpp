// The operations of COrderFuncService that only forward to the functions of this floor.
#include "orderservice/base/Thread.h"
#include "orderservice/check/InstrumentSteps.h"
#include "orderservice/check/PositionExchange.h"
#include "orderservice/func/AlgoMessage.h"
#include "orderservice/func/FuncCancel.h"
#include "orderservice/func/FuncFrame.h"
#include "orderservice/func/FuncParser.h"
#include "orderservice/func/FuncReports.h"
#include "orderservice/func/FuncStrategy.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/func/FuncVolumes.h"
#include "orderservice/func/OrderFuncService.h"
#include "orderservice/func/OrderRoutines.h"

#include <utility>

namespace TC {

void COrderFuncService::sendMsg(QString& text, utils::ELogLevel level) {
    const utils::CLibraryCall call;
    TC::sendMsg(text, level);
}

utils::KNError COrderFuncService::str2KNError(const std::string& text) {
    return TC::str2KNError(text);
}

void COrderFuncService::parserParam(COrderFuncParam& param, const std::string& text, std::string& error) {
    const utils::CLibraryCall call;
    TC::parserParam(param, text, error);
}

bool COrderFuncService::fillStkOptionParam(COrderFuncParam& param, PassorderFunOrderType op,
                                           std::string& error) {
    return TC::fillStkOptionParam(param, op, error);
}

bool COrderFuncService::isComposeOrderType(int orderType) {
    return TC::isComposeOrderType(orderType);
}

COrderStrategyParam COrderFuncService::getStrategy(const COrderFuncParam& param, std::string& error) {
    const utils::CLibraryCall call;
    return TC::getStrategy(param, error);
}

std::string COrderFuncService::translateAccountID(std::string id, EOrderStrategyTradeType tradeType) {
    const utils::CLibraryCall call;
    return TC::translateAccountID(std::move(id), tradeType);
}

void COrderFuncService::fillHedgeParam(CBasketHedgeParam& hedge, COrderStrategyParam& strategy,
                                       QString& futuresAccount, QString& futuresCode, double ratio,
                                       std::string& error) {
    const utils::CLibraryCall call;
    TC::fillHedgeParam(hedge, strategy, futuresAccount, futuresCode, ratio, error);
}

bool COrderFuncService::checkAccount(const COrderStrategyParam& strategy) {
    const utils::CLibraryCall call;
    return TC::checkAccount(strategy);
}

bool COrderFuncService::checkAccountStatus(const COrderStrategyParam& strategy) {
    const utils::CLibraryCall call;
    return TC::checkAccountStatus(strategy);
}

/// The look-up of each account's instrument would have no effect, so it is not made.
boost::shared_ptr<CQuoteRequest> COrderFuncService::prepareCode(const QString& code, CAccounts&) {
    const utils::CLibraryCall call;
    return requestQuotes(code);
}

void COrderFuncService::orderSpec(const COrderFuncParam& param, const COrderStrategyParam& strategy) {
    const utils::CLibraryCall call;
    TC::orderSpec(param, strategy, reporterOf(param));
}

void COrderFuncService::orderStock(const COrderFuncParam& param, const COrderStrategyParam& strategy,
                                   std::string algoParam) {
    const utils::CLibraryCall call;
    TC::orderStock(param, strategy, reporterOf(param), algoParam);
}

void COrderFuncService::orderCompose(const COrderFuncParam& param, const COrderStrategyParam& strategy) {
    const utils::CLibraryCall call;
    TC::orderCompose(param, strategy, reporterOf(param));
}

void COrderFuncService::orderCredit(const COrderFuncParam& param, const COrderStrategyParam& strategy) {
    const utils::CLibraryCall call;
    TC::orderCredit(param, strategy, reporterOf(param));
}

void COrderFuncService::orderOption(const COrderFuncParam& param, const COrderStrategyParam& strategy) {
    const utils::CLibraryCall call;
    TC::orderOption(param, strategy, reporterOf(param));
}

long long COrderFuncService::getCanOrderVolume(std::string accountKey, EOperationType op, QString code,
                                               double price) {
    const utils::CLibraryCall call;
    return TC::getCanOrderVolume(accountKey, op, code, price);
}

long long COrderFuncService::getAccountPercentNum(std::string& accountKey, EOperationType op, int orderType,
                                                  QString& code, double price, double percent) const {
    const utils::CLibraryCall call;
    return TC::getAccountPercentNum(accountKey, op, orderType, code, price, percent);
}

int COrderFuncService::getAccountFuturesNum(std::string& accountKey, EOperationType, QString& code,
                                            double money, double price) const {
    const utils::CLibraryCall call;
    return TC::getAccountFuturesNum(accountKey, code, money, price);
}

long long COrderFuncService::calcRightOrderVolume(EOperationType op, long long volume, int unit,
                                                  long long canVolume) {
    return TC::calcRightOrderVolume(op, volume, unit, canVolume);
}

std::string COrderFuncService::getAlgParamsStr(const std::string& text,
                                               std::vector<CCodeOrderParam> records) {
    const utils::CLibraryCall call;
    return TC::getAlgParamsStr(text, std::move(records));
}

void COrderFuncService::exchangePosition(boost::shared_ptr<CAccountInfo> account,
                                         QVector<COrderSingleParam>& orders) {
    const utils::CLibraryCall call;
    TC::exchangePosition(account, orders, 1);
}

void COrderFuncService::doCancelOrder(const std::string& func, const std::string& param) {
    const utils::CLibraryCall call;
    TC::doCancelOrder(func, param);
}

int COrderFuncService::tranAccountType(const std::string& text) {
    return TC::tranAccountType(text);
}

} // namespace TC
