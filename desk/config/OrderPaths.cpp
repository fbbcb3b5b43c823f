#include "desk/config/OrderPaths.h"

#include "desk/config/FolderFiles.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <optional>
#include <system_error>
#include <vector>

namespace desk {
namespace {

namespace fs = std::filesystem;

/// Returns the names of the desk's own files, of the drafts of the files that it replaces, and of the files
/// that the paper broker's store creates next to its file.
std::vector<std::string> ownFiles() {
    std::vector<std::string> names(std::begin(kOwnFiles), std::end(kOwnFiles));
    for (const char* replaced : {kStrategyFile, kSettingsFile, kControlSocketName})
        names.push_back(std::string(replaced) + kDraftSuffix);
    for (const char* suffix : kStoreSuffixes)
        names.push_back(std::string(kPaperStoreName) + suffix);
    return names;
}

/// Returns the path with all links resolved, even if no file exists there yet.
fs::path realPlace(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code unreadable;
    for (int links = 0; links < kMostLinks; ++links) {
        const fs::path parent = fs::weakly_canonical(path.parent_path(), unreadable);
        path = (unreadable ? path.parent_path() : parent) / path.filename();
        if (!fs::is_symlink(fs::symlink_status(path, unreadable))) break;
        const fs::path target = fs::read_symlink(path, unreadable);
        if (unreadable) break;
        path = (path.parent_path() / target).lexically_normal();
    }
    return path;
}

struct CFileId {
    dev_t m_device;
    ino_t m_number;
};

std::optional<CFileId> idOf(const fs::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return CFileId{status.st_dev, status.st_ino};
}

/// A path, its resolved place, and the file that it names.
struct CNamed {
    explicit CNamed(const fs::path& path) : m_place(realPlace(path)), m_id(idOf(path)) {}

    bool isSame(const CNamed& other) const {
        if (m_place == other.m_place) return true;
        return m_id && other.m_id && m_id->m_device == other.m_id->m_device &&
               m_id->m_number == other.m_id->m_number;
    }

    fs::path m_place;
    std::optional<CFileId> m_id;
};

bool isBelow(const fs::path& place, const fs::path& folder) {
    const fs::path root = realPlace(folder);
    return std::mismatch(root.begin(), root.end(), place.begin(), place.end()).first == root.end();
}

/// Returns the reason why this path cannot be used; `head` is the start of the message.
std::string whyNotTaken(const fs::path& folder, const fs::path& path, const std::string& head) {
    std::error_code unreadable;
    if (!path.has_filename() || fs::is_directory(path, unreadable))
        return head + " is a folder; expected a place for an order file";
    const CNamed named(path);
    for (const std::string& name : ownFiles()) {
        if (named.isSame(CNamed(folder / name)))
            return head + " is the desk's own " + name + ", which the strategy would delete";
    }
    if (isBelow(named.m_place, folder / kRejectedFolder))
        return head + " is in " + kRejectedFolder + "/, where the desk keeps refused order files";
    return {};
}

} // namespace

std::string whyNoOrderPath(const fs::path& folder, const std::string& path, const std::string& shown) {
    if (path.find('\0') != std::string::npos)
        return "path contains a zero byte; expected the name of an order file";
    const std::string head = "path \"" + shown + "\"";
    std::string reason = whyNotTaken(folder, path, head);
    if (reason.empty()) reason = whyNotTaken(folder, path + kTakenSuffix, head + " with \".tmp\"");
    return reason;
}

std::string whyPathsMeet(const std::string& path, const std::string& shown,
                         const TC::COrderStrategyParam& other) {
    const std::string theirs = other.m_strSignalSource.toStdString();
    if (!other.comesFromFile() || theirs.empty()) return {};
    const std::string channel = "channel " + std::to_string(other.m_nChannel);
    const std::string head = "path \"" + shown + "\"";
    const CNamed mine(path);
    const CNamed placeOfOther(theirs);
    if (mine.isSame(placeOfOther)) return head + " is the path of " + channel + " too";
    const CNamed mineWhenTaken(path + kTakenSuffix);
    const CNamed otherWhenTaken(theirs + kTakenSuffix);
    if (!mineWhenTaken.isSame(placeOfOther) && !mine.isSame(otherWhenTaken) &&
        !mineWhenTaken.isSame(otherWhenTaken))
        return {};
    return head + " and the path of " + channel +
           " are the same if \".tmp\" is added to one of them; each strategy would delete the other's files";
}

bool isForeignPath(const std::string& path) {
    const bool hasDrive =
        path.size() > 1 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0]));
    return hasDrive || path.find('\\') != std::string::npos;
}

} // namespace desk
