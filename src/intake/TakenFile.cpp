#include "orderservice/intake/TakenFile.h"

#include "orderservice/base/Clock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace TC {
namespace {

/// Like renameAfterLooking, but no other process can take the name in between, if the file system supports
/// it.
int renameToNewName(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    return errno == EINVAL || errno == ENOSYS ? renameAfterLooking(from, to) : errno;
}

/// Renames the file to `stem` plus the time, and plus a number if that name is already taken.
CPutAside moveWithTime(const std::string& path, const std::string& stem) {
    constexpr int kMostTries = 1000;
    const std::string name =
        stem + utils::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")).toStdString();
    std::string target = name;
    int error = renameToNewName(path, target);
    for (int i = 2; error == EEXIST && i <= kMostTries; ++i) {
        target = name + '-' + std::to_string(i);
        error = renameToNewName(path, target);
    }
    if (error != 0) return {false, path, std::strerror(error)};
    return {true, target, {}};
}

CPutAside moveToFolder(const std::string& path, const std::string& name, const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    // The error is not checked here: if the folder could not be created, the move fails and says why.
    return moveWithTime(path, folder + '/' + std::filesystem::path(name).filename().string() + '.');
}

} // namespace

int renameAfterLooking(const std::string& from, const std::string& to) {
    struct stat status {};
    if (::lstat(to.c_str(), &status) == 0) return EEXIST;
    return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

COpenedFile openRegularFile(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        if (errno == ENOENT || errno == ENOTDIR) return {};
        return {nullptr, std::string("it cannot be opened: ") + std::strerror(errno)};
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return {nullptr, S_ISDIR(status.st_mode) ? "it is a folder" : "it is not a regular file"};
    }
    CFileStream stream(::fdopen(descriptor, "r"));
    if (stream) return {std::move(stream), {}};
    const int error = errno;
    ::close(descriptor);
    return {nullptr, std::string("it cannot be opened: ") + std::strerror(error)};
}

CPutAside putAside(const std::string& path, const std::string& name, const std::string& folder) {
    std::string trouble;
    if (!folder.empty()) {
        CPutAside moved = moveToFolder(path, name, folder);
        if (moved.m_bMoved) return moved;
        trouble = "it cannot be moved to " + folder + ": " + moved.m_strTrouble;
    }
    CPutAside beside = moveWithTime(path, name + ".rejected-");
    if (!beside.m_bMoved)
        trouble += (trouble.empty() ? "" : "; ") + ("it cannot be renamed: " + beside.m_strTrouble);
    beside.m_strTrouble = trouble;
    return beside;
}

CTakenFile::~CTakenFile() {
    m_stream.reset();
    if (!m_bKept) ::unlink(m_strPath.c_str());
}

long long CTakenFile::size() const {
    struct stat status {};
    return ::fstat(::fileno(m_stream.get()), &status) == 0 ? status.st_size : 0;
}

CPutAside CTakenFile::keep(const std::string& mark, const std::string& folder) {
    m_bKept = true; // also if the move fails or throws
    return putAside(m_strPath, m_strSource + mark, folder);
}

} // namespace TC
