#pragma once

#include "base/Unset.h"
#include "records/Data.h"

#include <QMap>
#include <QString>
#include <QVector>

namespace TC {

/// One row of a basket in the host's settings.
struct CBasketStockData {
    QString m_strMarket;
    QString m_strCode;
    QString m_strName;
    double m_dWeight = 0.0;
    int m_nVolume = kUnsetInt;
    int m_eOperationType = -1;
    double m_dPrice = kUnsetDouble;
};

/// A named basket.
struct CBasketSetting {
    QVector<CBasketStockData> m_rows;
};

using CBasketMap = QMap<QString, CBasketSetting>;

/// The price choice of a basket's hedge leg; the rest of the record is the host's.
struct CBasketHedgeParam : knservice::IData {
    int m_nPriceKind = 0; ///< 3 when buying, 9 when selling
};

} // namespace TC
