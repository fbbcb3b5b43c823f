#include "desk/door/ControlSocket.h"

#include "desk/config/FolderFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace desk {
namespace {

using boost::asio::local::stream_protocol;
using boost::system::error_code;

constexpr mode_t kSocketMode = 0600;
constexpr mode_t kModeBits = 07777;

std::string shownPath(const std::string& folder) {
    return folder + '/' + kControlSocketName;
}

utils::KNError failure(const std::string& folder, const std::string& cause) {
    return {kControlUnusable, shownPath(folder) + ": " + cause};
}

/// Whether the path has something that is not a socket.
bool isOccupied(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && !S_ISSOCK(status.st_mode);
}

/// Gives the socket its permission. False with errno set if it has another one afterwards.
bool restrict(const std::string& path) {
    struct stat status {};
    if (::chmod(path.c_str(), kSocketMode) != 0 || ::lstat(path.c_str(), &status) != 0) return false;
    errno = EPERM; // a file system without permissions
    return S_ISSOCK(status.st_mode) && (status.st_mode & kModeBits) == kSocketMode;
}

/// Binds to the draft, restricts it, and listens. Nobody can connect before the last step.
error_code listenOnDraft(const std::string& draft, stream_protocol::acceptor& acceptor) {
    const auto systemError = [] { return error_code(errno, boost::system::system_category()); };
    if (::unlink(draft.c_str()) != 0 && errno != ENOENT) return systemError();
    error_code error;
    acceptor.open(stream_protocol(), error);
    if (!error) acceptor.bind(stream_protocol::endpoint(draft), error);
    if (!error && !restrict(draft)) error = systemError();
    if (!error) acceptor.listen(stream_protocol::acceptor::max_listen_connections, error);
    return error;
}

} // namespace

CFolderHandle::~CFolderHandle() {
    close();
}

utils::KNError CFolderHandle::open(const std::string& folder) {
    close();
    m_nDescriptor = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (m_nDescriptor >= 0) return {};
    return {kControlUnusable, folder + ": " + std::strerror(errno)};
}

void CFolderHandle::close() {
    if (m_nDescriptor >= 0) ::close(m_nDescriptor);
    m_nDescriptor = -1;
}

std::string CFolderHandle::pathOf(const std::string& name) const {
    return "/proc/self/fd/" + std::to_string(m_nDescriptor) + '/' + name;
}

utils::KNError listenOnControlSocket(const std::string& folder, const CFolderHandle& handle,
                                     stream_protocol::acceptor& acceptor) {
    const std::string path = handle.pathOf(kControlSocketName);
    const std::string draft = path + kDraftSuffix;
    if (isOccupied(path)) return failure(folder, "there is a file with this name that is not a socket");
    if (isOccupied(draft)) return failure(folder, "the name with " + std::string(kDraftSuffix) + " is used");
    const error_code error = listenOnDraft(draft, acceptor);
    std::string cause = error ? error.message() : std::string();
    if (cause.empty() && std::rename(draft.c_str(), path.c_str()) != 0) cause = std::strerror(errno);
    if (cause.empty()) return {};
    error_code ignored;
    acceptor.close(ignored);
    ::unlink(draft.c_str());
    return failure(folder, cause);
}

utils::KNError connectToControlSocket(const std::string& folder, stream_protocol::socket& socket) {
    CFolderHandle handle;
    if (const utils::KNError opened = handle.open(folder); !opened.isSuccess()) return opened;
    error_code error;
    socket.connect(stream_protocol::endpoint(handle.pathOf(kControlSocketName)), error);
    if (!error) return {};
    if (isOccupied(handle.pathOf(kControlSocketName)))
        return failure(folder, "there is a file with this name that is not a socket");
    if (error == boost::asio::error::connection_refused ||
        error == boost::system::errc::no_such_file_or_directory)
        return {kControlNoAnswer, "no desk answers in " + folder +
                                      ": none runs, or it is starting or ending, or it has no control door "
                                      "(its screen says so)"};
    return failure(folder, error.message());
}

} // namespace desk
