#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Data.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace knservice {

/// A position in the data centre.
struct ORDERSERVICE_EXPORT CPositionDetail : IData {
    std::string m_strCode; ///< instrument code
    int m_nVolume = 0;     ///< shares or lots
    bool m_bFlag = false;  ///< the volume is ignored: a sell order uses 0 instead
};
using CPositionDetailPtr = boost::shared_ptr<CPositionDetail>;

/// The sum of an account's positions in one instrument.
struct ORDERSERVICE_EXPORT CPositionStatics : IData {
    TC::CAccountInfoPtr m_account;
    std::string m_strMarket;
    std::string m_strCode;
    std::string m_strName;
    int m_nPositionVolume = 0;           ///< shares or lots held
    std::int64_t m_nAvailableVolume = 0; ///< the part of them that can be sold now
};
using CPositionStaticsPtr = boost::shared_ptr<CPositionStatics>;

/// A portfolio and its positions by key text. An order sells the position with the first key in byte order.
struct ORDERSERVICE_EXPORT CPortfolio : IData {
    std::map<std::string, boost::shared_ptr<IData>> m_positions;
};

/// Returns the key of a sub-account's portfolio in the table of portfolios. id is UTF-8.
inline std::string portfolioKey(int kind, std::string_view id) {
    return std::to_string(kind) + "____" + std::string(id);
}

} // namespace knservice
