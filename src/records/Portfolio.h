#pragma once

#include "records/Account.h"
#include "records/Data.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace knservice {

/// A position as the data centre keeps it.
struct CPositionDetail : IData {
    std::string m_strCode; ///< instrument code
    int m_nVolume = 0;     ///< shares or lots
    bool m_bFlag = false;  ///< the volume does not count: sellers take 0 in its place
};
using CPositionDetailPtr = boost::shared_ptr<CPositionDetail>;

/// What an account holds of one instrument, all its positions together.
struct CPositionStatics : IData {
    TC::CAccountInfoPtr m_account;
    std::string m_strMarket;
    std::string m_strCode;
    std::string m_strName;
    int m_nPositionVolume = 0;           ///< shares or lots held
    std::int64_t m_nAvailableVolume = 0; ///< of these, what can be sold now
};
using CPositionStaticsPtr = boost::shared_ptr<CPositionStatics>;

/// A portfolio and its positions by key text. An order sells the position whose key comes first in byte
/// order.
struct CPortfolio : IData {
    std::map<std::string, boost::shared_ptr<IData>> m_positions;
};

/// The key of a sub-account's portfolio in the table of portfolios, id in UTF-8.
inline std::string portfolioKey(int kind, std::string_view id) {
    return std::to_string(kind) + "____" + std::string(id);
}

} // namespace knservice
