#include "desk/config/TextFile.h"

#include "desk/config/FolderFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace desk {
namespace {

/// Writes all bytes. The system may need several steps.
bool writeAll(int descriptor, const std::string& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) done += static_cast<std::size_t>(count);
    }
    return true;
}

/// Writes and syncs a new file that only its owner can access. If it fails, errno has the reason.
bool writeSynced(const std::string& path, const std::string& bytes) {
    // After a power failure an old draft may exist with access for other users.
    ::unlink(path.c_str());
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0) return false;
    if (writeAll(descriptor, bytes) && ::fsync(descriptor) == 0) return ::close(descriptor) == 0;
    const int reason = errno;
    ::close(descriptor);
    errno = reason;
    return false;
}

} // namespace

EFileRead readTextFile(const std::string& path, std::string& text) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) return EFileRead::Missing;
    std::ifstream stream(path, std::ios::binary);
    if (!std::filesystem::is_regular_file(status) || !stream) return EFileRead::Unreadable;
    std::ostringstream bytes;
    // Copying zero bytes would set the failure bit of the target stream, so an empty file is handled first.
    if (stream.peek() != std::ifstream::traits_type::eof()) bytes << stream.rdbuf();
    text = bytes.str();
    return stream.bad() || bytes.fail() ? EFileRead::Unreadable : EFileRead::Whole;
}

utils::KNError replaceTextFile(const std::string& folder, const std::string& name, const std::string& text) {
    constexpr int kCannotWrite = 1;
    const std::string path = folder + "/" + name;
    const std::string draft = path + kDraftSuffix;
    if (!writeSynced(draft, text) || ::rename(draft.c_str(), path.c_str()) != 0) {
        const std::string reason = std::strerror(errno);
        ::unlink(draft.c_str());
        return {kCannotWrite, path + ": " + reason};
    }
    const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
    return {};
}

} // namespace desk
