#include "orderservice/kit/TimeServiceBase.h"

#include "orderservice/base/Clock.h"

namespace kit {

std::int64_t CTimeServiceBase::currentTime() {
    return utils::currentDateTime().toSecsSinceEpoch();
}

} // namespace kit
