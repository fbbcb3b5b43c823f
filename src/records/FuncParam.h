#pragma once

#include "orderservice/records/OrderParam.h"

#include <QString>
#include <QVector>

#include <string>

namespace TC {

/// Operation of a function-trading call. The numbers are the same as in the function's parameter text.
enum class PassorderFunOrderType : int {};

/// One call of function trading. Texts are UTF-8.
struct COrderFuncParam {
    int m_nOpType = -1;    ///< a PassorderFunOrderType
    int m_nOrderType = -1; ///< selects the accounts and the unit
    std::string m_strAccountID;
    std::string m_strOrderCode;
    int m_nPrType = -1; ///< an EPriceType; -1: not set
    double m_dModelPrice = 0.0;
    double m_dModelVolume = 0.0;
    int m_nTradeType =
        0; ///< an EOrderStrategyTradeType derived from m_nOpType; at the start the stock family
    std::string m_strStrategyName;
    QVector<COrderSingleParam> m_orders;
    QString m_strFuncName;
    std::string m_strTradeKey;
    std::string m_strNote;
    std::string m_strModelName;
};

} // namespace TC
