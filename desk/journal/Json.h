#pragma once

#include "orderservice/kit/Json.h"

namespace desk {

using CJson = kit::CJson;

} // namespace desk
