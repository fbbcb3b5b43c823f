#pragma once

#include "orderservice/base/Bson.h"
#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Data.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/Instrument.h"
#include "orderservice/records/OrderParam.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace TC {

/// One order line of a command: one instrument on one account. Texts are UTF-8.
struct ORDERSERVICE_EXPORT CCodeOrderParam : knservice::IData {
    CAccountInfoPtr m_account;
    EHedge_Flag_Type m_eHedgeFlag = EHedge_Flag_Type::Speculation;
    EOperationType m_eOperationType = unsetEnum<EOperationType>();
    EOrderType m_eOrderType = unsetEnum<EOrderType>();
    EPositionType m_ePositionType = unsetEnum<EPositionType>();
    CStockInfo m_stock;
    EPriceType m_ePriceType = unsetEnum<EPriceType>();
    double m_dPrice = kUnsetDouble; ///< currency units
    /// Shares or lots. Not set if an amount of money to repay does not fit an int.
    int m_nVolume = kUnsetInt;
    std::string m_strUserId;
    EEntrustTypes m_eEntrustType = unsetEnum<EEntrustTypes>();
    std::string m_strContractText;
    std::string m_strRepayText;
    int m_nQuantityKind = kUnsetInt;
    /// If set, it is the exact volume or amount of money, and m_nVolume is its integer part.
    double m_dQuantity = kUnsetDouble;
    int m_nSubAccountKind = kUnsetInt;
    std::string m_strSubAccountId;
    int m_nOverFreqMode = kUnsetInt;
    int m_nValidTimeEnd = kUnsetInt; ///< end of the time range of an algorithm order
};

/// One command for the trading layer. The host's order client receives a shared pointer to it. Texts are
/// UTF-8.
struct ORDERSERVICE_EXPORT COrderComandParam : knservice::IData {
    EQdTraderType m_eTraderType = unsetEnum<EQdTraderType>();
    EQdHedgeType m_eHedgeType = EQdHedgeType::None;
    EFtSpecBtnBarType m_eBtnType = EFtSpecBtnBarType::None;
    std::vector<CCodeOrderParam> m_codes;
    std::map<std::string, double> m_weights; ///< account key to weight
    EQdStopLossType m_eStopLossType = EQdStopLossType::None;
    bool m_bUnion = false;
    bson::BSONObj m_extra;
    std::string m_strTag;
    std::string m_strAlgoParam;
    ETradePlatform m_ePlatform = ETradePlatform::Plain;
    bool m_bCommandFlag = false;
    bool m_bForceConfirm = false; ///< the host must ask the user before it acts
    EOrderStrategyType m_eStrategyType = unsetEnum<EOrderStrategyType>();
    std::string m_strRemark;
    /// Local time, "yyyy-MM-dd hh:mm:ss:zzz". Empty for futures options, both connects, the share-transfer
    /// market and gold.
    std::string m_strCreateTime;

    // Only commands of function trading set the rest.
    bool m_bFuncOrder = false;
    std::string m_strStrategyName; ///< of the caller's strategy
    std::string m_strFuncMessage;  ///< always empty
    std::string m_strOrderCode;    ///< name of the basket
    std::string m_strModelName;
};

using COrderComandParamPtr = boost::shared_ptr<COrderComandParam>;

/// An order that passed the checks, with the results of the checks.
struct orderParamForOrderService : COrderParam {
    std::vector<CCodeOrderParam> m_codes;
    std::map<std::string, double> m_weights; ///< account key to weight

    orderParamForOrderService() = default;
    explicit orderParamForOrderService(const COrderParam& order) : COrderParam(order) {}
    orderParamForOrderService& operator=(const COrderParam& order) {
        COrderParam::operator=(order);
        return *this;
    }
};

} // namespace TC

namespace knservice {

/// A command as the trading layer refers to it when it refuses it.
struct ORDERSERVICE_EXPORT COrderCommand : IData {
    /// The trade key of the function call that made the command: m_strAlgoParam of the command, unless that
    /// is the message of an algorithm. Empty for other commands. UTF-8.
    std::string m_strTradeKey;
};

using COrderCommandPtr = boost::shared_ptr<COrderCommand>;

/// State of one order at the broker. The trade client reports it; the host defines its content.
struct ORDERSERVICE_EXPORT COrderInfo : IData {};

using COrderInfoPtr = boost::shared_ptr<COrderInfo>;

} // namespace knservice
