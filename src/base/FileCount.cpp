#include "orderservice/base/FileCount.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace utils {
namespace {

std::optional<CFileCount> countDescriptor(int descriptor) {
    std::array<char, 65536> buffer{};
    CFileCount count;
    char last = '\n';
    for (;;) {
        const ssize_t size = ::read(descriptor, buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR) continue;
        if (size < 0) return std::nullopt;
        if (size == 0) break;
        count.bytes += size;
        count.lines += std::count(buffer.data(), buffer.data() + size, '\n');
        last = buffer[static_cast<std::size_t>(size) - 1];
    }
    if (last != '\n') ++count.lines;
    return count;
}

} // namespace

std::optional<CFileCount> countFile(const std::string& path) {
    // If the path is a pipe, opening it must not block.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return std::nullopt;
    struct stat status {};
    std::optional<CFileCount> count;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) count = countDescriptor(descriptor);
    ::close(descriptor);
    return count;
}

} // namespace utils
