#pragma once

#include "kit/Json.h"

namespace desk {

using CJson = kit::CJson;

} // namespace desk
