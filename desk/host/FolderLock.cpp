#include "desk/host/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace desk {
namespace {

constexpr const char* kLockFileName = ".lock";
constexpr mode_t kFileMode = 0600;
enum EFolderLockError : int { kFolderInUse = 1, kFolderUnusable = 2 };

std::string holderText(int descriptor) {
    char text[32] = {};
    const ssize_t size = ::pread(descriptor, text, sizeof text - 1, 0);
    return size > 0 ? " by process " + std::string(text, static_cast<std::size_t>(size)) : std::string();
}

/// Best effort: the id is only for messages.
void writeHolder(int descriptor) {
    const std::string text = std::to_string(::getpid());
    if (::ftruncate(descriptor, 0) != 0) return;
    if (::pwrite(descriptor, text.data(), text.size(), 0) < 0) return;
}

} // namespace

CFolderLock::~CFolderLock() {
    if (m_nDescriptor >= 0) ::close(m_nDescriptor);
}

utils::KNError CFolderLock::acquire(const std::string& folder) {
    const std::string path = folder + '/' + kLockFileName;
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode);
    if (descriptor < 0)
        return {kFolderUnusable, "cannot use desk folder " + folder + ": " + std::strerror(errno)};
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        if (m_nDescriptor >= 0) ::close(m_nDescriptor);
        m_nDescriptor = descriptor;
        writeHolder(descriptor);
        return {};
    }
    const bool isHeld = errno == EWOULDBLOCK;
    const std::string cause = isHeld ? "it is in use" + holderText(descriptor) : std::strerror(errno);
    ::close(descriptor);
    return {isHeld ? kFolderInUse : kFolderUnusable, "cannot use desk folder " + folder + ": " + cause};
}

} // namespace desk
