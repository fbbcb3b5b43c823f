#pragma once

#include "records/Data.h"

#include <boost/shared_ptr.hpp>

namespace TC {

/// Settings of an algorithm order. Their content is the host's, which derives its own record from this one.
class CAlgorithmOrderSetting : public knservice::IData {};

using CAlgorithmOrderSettingPtr = boost::shared_ptr<CAlgorithmOrderSetting>;

} // namespace TC
