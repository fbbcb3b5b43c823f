#pragma once

#include "orderservice/base/Unset.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace TC {

/// The instrument of a code record. All texts are UTF-8.
struct CStockInfo {
    std::string m_strMarket;
    std::string m_strCode;
    std::string m_strName;
    std::string m_strProductId;
};

/// The data of an instrument from the exchange client. The host fills it and shares it read-only.
struct CInstrumentDetail {
    struct CTradeInfo {
        int m_nTransferKind = 0; ///< transfer method of a share-transfer instrument
    };

    std::string m_strMarket;
    std::string m_strCode;
    std::string m_strName;
    std::string m_strProductId;
    double m_dReferencePrice = kUnsetDouble; ///< currency units
    /// Money = price * volume * multiplier, above 0. Not set: 1 for stocks, not known for contracts.
    double m_dMultiplier = kUnsetDouble;
    CTradeInfo m_tradeInfo;
};

using CInstrumentDetailPtr = boost::shared_ptr<const CInstrumentDetail>;

} // namespace TC
