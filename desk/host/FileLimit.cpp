#include "desk/host/FileLimit.h"

#include <sys/resource.h>

#include <cerrno>
#include <cstring>

namespace desk {

utils::KNError raiseFileLimit() {
    constexpr int kCannotRaise = 1;
    struct rlimit limit {};
    bool isRaised = ::getrlimit(RLIMIT_NOFILE, &limit) == 0;
    limit.rlim_cur = limit.rlim_max;
    isRaised = isRaised && ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
    if (isRaised) return {};
    return {kCannotRaise, std::string("the limit of open files stays as it is: ") + std::strerror(errno)};
}

} // namespace desk
