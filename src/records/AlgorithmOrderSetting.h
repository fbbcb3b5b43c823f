#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Data.h"

#include <boost/shared_ptr.hpp>

namespace TC {

/// Settings of an algorithm order. The host defines their content in its own record, which it derives from
/// this class.
class ORDERSERVICE_EXPORT CAlgorithmOrderSetting : public knservice::IData {};

using CAlgorithmOrderSettingPtr = boost::shared_ptr<CAlgorithmOrderSetting>;

} // namespace TC
