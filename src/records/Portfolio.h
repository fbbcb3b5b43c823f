#pragma once

#include "records/Data.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>

namespace knservice {

/// A position as the data centre keeps it.
struct CPositionDetail : IData {
    std::string m_strCode; ///< instrument code
    int m_nVolume = 0;     ///< shares or lots
    bool m_bFlag = false;  ///< the volume does not count: sellers take 0 in its place
};
using CPositionDetailPtr = boost::shared_ptr<CPositionDetail>;

/// A portfolio and its positions by key text.
struct CPortfolio : IData {
    std::map<std::string, boost::shared_ptr<IData>> m_positions;
};

} // namespace knservice
