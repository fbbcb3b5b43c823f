#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Enums.h"

#include <QString>
#include <QVector>

#include <string>
#include <string_view>

namespace TC {

// Many orders wait in the service's queue at once. So the fields of the next two records are in an order that
// leaves no gaps between them.

/// One line of an order.
struct COrderSingleParam {
    QString m_strCode;              ///< empty: the strategy's code applies
    QString m_strAccount;           ///< read only for strategies in table mode
    QString m_strCompact;           ///< contract number of a credit line
    double m_dPrice = kUnsetDouble; ///< currency units, used with EPriceType::Specified
    double m_dFirstLimit = kUnsetDouble;
    double m_dSecondLimit = kUnsetDouble;
    double m_dAmount = kUnsetDouble; ///< currency units
    double m_dWeight = 0.0;          ///< weight of a basket member
    int m_nVolume = kUnsetInt;       ///< shares or lots; unset: the strategy's volume applies
    int m_eOperationType = -1;       ///< operation code of a basket member
    int m_nOverFreqMode = kUnsetInt;
    EPriceType m_ePriceType = unsetEnum<EPriceType>(); ///< unset: the strategy's setting applies
    bool m_bHasFirstLimit = false;
    bool m_bHasSecondLimit = false;
};

/// One order as a door received it.
struct ORDERSERVICE_EXPORT COrderParam {
    int m_nOrderType = kUnsetInt; ///< order-type number, see records/OrderTypes.h
    int m_nChannel = kUnsetInt;   ///< id of the strategy that the order is meant for
    EOrderStrategyType m_eStrategyType = unsetEnum<EOrderStrategyType>();
    EOrderType m_eOrderType = unsetEnum<EOrderType>(); ///< unset: the strategy's order kind applies
    int m_nSettingKind = 0;                            ///< 1: m_strOrderSetting is the final algorithm text
    int m_nTradeTypeOverride = -1; ///< an EOrderStrategyTradeType that the line parser recognised
    bool m_bAll = false;           ///< the order used the word `all` and it matched at least one account
    QVector<COrderSingleParam> m_orders;
    QString m_strAccountKeyPart1; ///< if both parts are set, the order names its account
    QString m_strAccountKeyPart2;
    std::string m_strBasketText;
    std::string m_strAccountKey;
    std::string m_strRemark;       ///< UTF-8
    std::string m_strOrderSetting; ///< setting or algorithm text, UTF-8; empty: none
    std::string m_strTradeText1;
    std::string m_strTradeText2;
    std::string m_strTradeText3;

    /// The order as one line of text for the log.
    QString toQString() const;
};

/// The content of one `orderParam=` line of an order file. The host's parser fills it.
struct COrderTradeParam {
    std::string m_strRemark; ///< GBK from the host's parser, converted to UTF-8 afterwards
    int m_eOrderType = -1;
    QString m_strOrderSetting;
    QString m_strAccountKeyPart1;
    QString m_strAccountKeyPart2;
    int m_nSettingKind = 0;
    std::string m_strTradeText1;
    std::string m_strTradeText2;
    std::string m_strTradeText3;
};

/// Sort order of rows by code. `compare` is the same as a three-way comparison: negative, zero or positive.
ORDERSERVICE_EXPORT bool codeSingleParamLessThan(const COrderSingleParam& a, const COrderSingleParam& b);

struct COrderSingleParamCompareTraits {
    static int compare(const COrderSingleParam& a, const COrderSingleParam& b);
};

/// Whether the channel number means the strategy that reads the order line: channel 0.
ORDERSERVICE_EXPORT bool isUniversal(int channel);

/// Gives the order a new line, which is its only one. The list gets exactly the memory that it needs;
/// appending would reserve more.
ORDERSERVICE_EXPORT COrderSingleParam& setOnlyLine(COrderParam& order);

/// The code in an external field in GBK or UTF-8. "0" means no code.
ORDERSERVICE_EXPORT QString codeOfField(std::string_view field);

} // namespace TC
