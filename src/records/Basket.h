#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/records/Data.h"

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

/// The settings of a basket's hedge leg. The library knows only the price choice. The other fields belong to
/// the host and are passed on unchanged.
struct ORDERSERVICE_EXPORT CBasketHedgeParam : knservice::IData {
    int m_nPriceKind = 0; ///< 3 when buying, 9 when selling; key "m_nPriceKind"

    /// The document that was read, with the current price choice as the last field.
    bson::BSONObj toBson() const override;
    void bsonValueFromObj(const bson::BSONObj& obj) override;

private:
    bson::BSONObj m_rest;
};

} // namespace TC
