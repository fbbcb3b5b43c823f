#pragma once

#include "orderservice/base/Bson.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/AlgorithmOrderSetting.h"
#include "orderservice/records/OrderSetting.h"

#include <QMap>
#include <QString>
#include <QVector>

namespace TC {

/// One strategy: a channel for orders from one kind of source, with their accounts and their product family.
/// It is stored in the host's map under its channel number. Copies share the settings of slots 1 to 15 until
/// one of them is changed. So do not keep a reference from the changing setting() while the record is copied:
/// a change through it would reach the copy too.
struct COrderStrategyParam {
    static constexpr int kRunning = 0;
    static constexpr int kStopped = 1;
    static constexpr int kTableMode = 1; ///< value of m_nAccountMode: rows of a DBF table name their accounts

    int m_nStatus = kStopped;
    int m_nChannel = kUnsetInt; ///< the strategy's id, the key of the map
    QString m_strName;
    ESelectedAccountType m_eSelectedAccountType = ESelectedAccountType::Group;
    QString m_strSelectedAccount; ///< name of the group or account; may be empty
    EOrderStrategyTradeType m_eTradeType = EOrderStrategyTradeType::Stock;
    EPositionType m_ePositionType{};
    EOrderStrategyType m_eStrategyType = EOrderStrategyType::File;
    int m_nAccountMode = 0;
    QString m_strSignalSource; ///< path of a file or table, or "ip:port" of a socket
    QString m_strUser;         ///< login name of the socket, or first argument of the decryption library
    QString m_strPass;
    QString m_strCode; ///< instrument that the strategy trades; empty for baskets

    COrderSetting m_stockSetting;                                        ///< slot 0
    QVector<COrderSetting> m_furtherSettings = defaultFurtherSettings(); ///< slots 1 to 15

    int m_nVolume = 1; ///< shares or lots
    int m_nFurther1 = 1;
    int m_nFurther2 = 1;
    bool m_bUseAmount = false;       ///< the volume is calculated from m_dAmount
    double m_dAmount = kUnsetDouble; ///< currency units
    bool m_bByPercent = false;
    double m_dPercent = kUnsetDouble; ///< 0 to 1
    int m_nStartCount = 0;
    bool m_bHedgeBasket = false;
    bool m_bCommandFlag = false;
    EOrderType m_eOrderType = unsetEnum<EOrderType>();
    CAlgorithmOrderSettingPtr m_algoSetting;
    bson::BSONObj m_hedgeParam;

    const COrderSetting& setting(ESettingSlot slot) const {
        return slot == ESettingSlot::Stock ? m_stockSetting
                                           : m_furtherSettings.at(static_cast<int>(slot) - 1);
    }
    COrderSetting& setting(ESettingSlot slot) {
        return slot == ESettingSlot::Stock ? m_stockSetting : m_furtherSettings[static_cast<int>(slot) - 1];
    }

    bool isRunning() const { return m_nStatus == kRunning; }

    /// Whether the orders come from a file: an order file or a DBF table.
    bool comesFromFile() const {
        return m_eStrategyType == EOrderStrategyType::File ||
               m_eStrategyType == EOrderStrategyType::BatchPending;
    }
};

/// The host's map of strategies, by channel number.
using COrderStrategyMap = QMap<int, COrderStrategyParam>;

} // namespace TC
