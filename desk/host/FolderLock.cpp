#include "desk/host/FolderLock.h"

#include "desk/config/FolderFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace desk {
namespace {

constexpr mode_t kFileMode = 0600;
/// Errors of flock on network file systems. Some have no locks; some cannot lock a folder that is open for
/// reading.
constexpr int kCannotLock[] = {ENOLCK, EBADF, EOPNOTSUPP, ENOSYS, EINVAL};
enum EFolderLockError : int { kFolderInUse = 1, kFolderUnusable = 2 };

std::string holderOf(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    char text[32] = {};
    const ssize_t size = descriptor >= 0 ? ::pread(descriptor, text, sizeof text - 1, 0) : -1;
    if (descriptor >= 0) ::close(descriptor);
    return size > 0 ? " by process " + std::string(text, static_cast<std::size_t>(size))
                    : " by another process";
}

/// Best effort: the id is only for messages.
void writeHolder(int descriptor) {
    const std::string text = std::to_string(::getpid());
    if (::ftruncate(descriptor, 0) != 0) return;
    if (::pwrite(descriptor, text.data(), text.size(), 0) < 0) return;
}

/// Opens and locks the path. Returns the descriptor, or -1 with errno set.
int openLocked(const std::string& path, int flags) {
    const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, kFileMode);
    if (descriptor < 0 || ::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return descriptor;
    const int reason = errno;
    ::close(descriptor);
    errno = reason;
    return -1;
}

} // namespace

std::string lockFailureText(int reason) {
    for (const int unable : kCannotLock) {
        if (reason == unable)
            return "this file system cannot lock the folder; put the desk folder on a local disk";
    }
    return std::strerror(reason);
}

CFolderLock::~CFolderLock() {
    release();
}

void CFolderLock::release() {
    if (m_nFile >= 0) ::close(m_nFile);
    if (m_nFolder >= 0) ::close(m_nFolder);
    m_nFile = m_nFolder = -1;
}

utils::KNError CFolderLock::acquire(const std::string& folder) {
    release();
    const std::string path = folder + '/' + kLockFileName;
    m_nFolder = openLocked(folder, O_RDONLY | O_DIRECTORY);
    if (m_nFolder >= 0) m_nFile = openLocked(path, O_RDWR | O_CREAT);
    if (m_nFile >= 0) {
        writeHolder(m_nFile);
        return {};
    }
    const int reason = errno;
    const bool isHeld = reason == EWOULDBLOCK;
    const std::string cause = isHeld ? "it is in use" + holderOf(path) : lockFailureText(reason);
    release();
    return {isHeld ? kFolderInUse : kFolderUnusable, "cannot use desk folder " + folder + ": " + cause};
}

} // namespace desk
